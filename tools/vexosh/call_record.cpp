#include "tools/vexosh/call_record.h"

#include "tools/vexosh/call.h"

namespace vexosh {

void CallRecord::start(const std::string& path)
{
    if (on()) {
        throw BadInput("a record into " + path_ + " is running; stop it first");
    }
    file_.open(path);
    if (!file_) {
        file_.close();
        file_.clear();
        throw BadInput("cannot write '" + path + "'");
    }
    path_ = path;
    lines_ = 0;
    last_ = "# driver calls and what they answered, for `replay calls`";
}

std::string CallRecord::stop()
{
    if (!on()) {
        throw BadInput("no record is running");
    }
    file_ << last_ << '\n';
    file_.close();
    const bool written = !file_.fail();
    file_.clear();
    if (!written) {
        throw BadInput("cannot write all of '" + path_ + "'");
    }
    return std::to_string(lines_) + (lines_ == 1 ? " line in " : " lines in ") + path_;
}

void CallRecord::line(const std::string& command)
{
    file_ << last_ << '\n';
    last_ = command;
    ++lines_;
}

void CallRecord::failed(const std::string& command)
{
    if (last_ == command) {
        last_ = "try " + command;
    }
}

CallRecord::Names::Names(const char* operation)
    : names_(split_words(find_operation(operation)->usage))
{
}

} // namespace vexosh
