#pragma once

#include <mutex>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "tools/vexosh/event.h"

namespace vexosh {

/// Where the output of a shell goes. Used by several threads.
class Console {
public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    virtual ~Console() = default;

    /// What commands print, in whole lines.
    virtual void print(std::string_view lines) = 0;
    /// What happens meanwhile.
    virtual void tell(const Event& event) = 0;
};

/// A console on a terminal or a file.
class StreamConsole : public Console {
public:
    explicit StreamConsole(std::ostream& out) : out_(out) {}

    void print(std::string_view lines) override;
    void tell(const Event& event) override;
    /// Events as lines of JSON.
    void use_json(bool json) { json_ = json; }

private:
    std::mutex mutex_;
    std::ostream& out_;
    bool json_ = false;
};

/// Gives lines to a console when they end, so that those of others do not get in between. What is
/// left of a line goes with a flush.
class LineBuffer : public std::streambuf {
public:
    explicit LineBuffer(Console& console) : console_(console) {}

private:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;
    void add(std::string_view text);

    Console& console_;
    std::string line_;
};

/// A stream of lines for a console.
class LineStream : public std::ostream {
public:
    explicit LineStream(Console& console) : std::ostream(nullptr), buffer_(console)
    {
        rdbuf(&buffer_);
    }

private:
    LineBuffer buffer_;
};

} // namespace vexosh
