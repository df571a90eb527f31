#include "tools/vexosh/console.h"

namespace vexosh {

void StreamConsole::print(std::string_view lines)
{
    const std::lock_guard lock(mutex_);
    out_ << lines << std::flush;
}

void StreamConsole::tell(const Event& event)
{
    print((json_ ? event.data.dump() : event.text) + "\n");
}

void LineBuffer::add(std::string_view text)
{
    const std::size_t end = text.rfind('\n') + 1; // 0 when there is none
    line_ += text.substr(0, end);
    if (end > 0) {
        console_.print(line_);
        line_.clear();
    }
    line_ += text.substr(end);
}

LineBuffer::int_type LineBuffer::overflow(int_type c)
{
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        const char letter = traits_type::to_char_type(c);
        add({&letter, 1});
    }
    return traits_type::not_eof(c);
}

std::streamsize LineBuffer::xsputn(const char* text, std::streamsize size)
{
    add({text, static_cast<std::size_t>(size)});
    return size;
}

int LineBuffer::sync()
{
    if (!line_.empty()) {
        console_.print(line_);
        line_.clear();
    }
    return 0;
}

} // namespace vexosh
