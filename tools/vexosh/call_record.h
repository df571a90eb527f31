#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "tools/vexosh/call_words.h"

namespace vexosh {

/// A file of driver calls, a line each, as `call` takes them: with what they answered. To be used
/// with the driver held.
class CallRecord {
public:
    /// Throws BadInput when a record is on, or the file cannot be written.
    void start(const std::string& path);
    /// Throws BadInput when no record is on, or the file could not be written to its end.
    /// @return what there is in which file.
    std::string stop();
    bool on() const { return file_.is_open(); }

    void line(const std::string& command);
    /// A command has failed: where it is the last line, a replay is to try it.
    void failed(const std::string& command);

    /// A call, after it was made.
    template <class R, class... P, class... A>
    void note(const char* name, R (VexoSdkBase::*)(P...), bool done, const A&... arguments)
    {
        Names names(name);
        std::string text = std::string("call ") + name;
        std::string answer = done ? " = true" : " = false";
        (add<P>(arguments, names, done, text, answer), ...);
        line(text + answer);
    }

private:
    /// The names of an operation's inputs, one after the other.
    class Names {
    public:
        explicit Names(const char* operation);
        const std::string& next() { return names_.at(next_++); }

    private:
        std::vector<std::string> names_;
        std::size_t next_ = 0;
    };

    template <class P, class A>
    static void add(const A& argument, Names& names, bool done, std::string& text,
                    std::string& answer)
    {
        if constexpr (Arg<P>::kInput) {
            text += " " + as_word(argument, names.next());
        } else if (done) {
            answer += " " + show_value(argument);
        }
    }

    std::string path_;
    std::ofstream file_;
    std::string last_; // line, which is still to be written
    std::size_t lines_ = 0;
};

} // namespace vexosh
