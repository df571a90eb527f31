#include "tools/vexosh/differences.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>

#include "tools/vexosh/input.h"

namespace vexosh {
namespace {

std::string& card_program()
{
    static std::string path = "/proc/self/exe";
    return path;
}

/// A file of its own, which goes with it.
class ScratchFile {
public:
    ScratchFile() : path_((std::filesystem::temp_directory_path() / "vexosh_XXXXXX").string())
    {
        const int file = ::mkstemp(path_.data());
        if (file < 0) {
            throw BadInput("cannot write a file in " + path_.substr(0, path_.find_last_of('/')));
        }
        ::close(file);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() { std::remove(path_.c_str()); }

    const std::string& path() const { return path_; }
    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        std::ifstream file(path_);
        for (std::string line; std::getline(file, line);) {
            all.push_back(line);
        }
        return all;
    }

private:
    std::string path_;
};

/// Runs a program whose errors go to a file, and waits for it.
/// @return whether it succeeded.
bool run_program(const std::vector<std::string>& words, const std::string& errors)
{
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), O_WRONLY | O_TRUNC, 0);
    pid_t child = 0;
    const int why =
        ::posix_spawn(&child, words[0].c_str(), &files, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    if (why != 0) {
        throw BadInput("cannot start a second card");
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::vector<std::string> without_comments(const std::vector<std::string>& lines)
{
    std::vector<std::string> commands;
    for (const std::string& line : lines) {
        if (!line.empty() && line[0] != '#') {
            commands.push_back(line);
        }
    }
    return commands;
}

/// The lines that are there more often than in the other, with a sign.
void add_surplus(std::vector<std::string>& result, const std::vector<std::string>& lines,
                 const std::vector<std::string>& other, const char* sign)
{
    std::map<std::string_view, int> count;
    for (const std::string& line : other) {
        ++count[line];
    }
    for (const std::string& line : lines) {
        if (count[line]-- <= 0) {
            result.push_back(sign + line);
        }
    }
}

} // namespace

void set_card_program(std::string path)
{
    card_program() = std::move(path);
}

std::vector<std::string> saved_by_script(const std::string& path)
{
    if (::access(path.c_str(), R_OK) != 0) {
        throw BadInput("cannot read '" + path + "'");
    }
    const ScratchFile saved;
    const ScratchFile errors;
    const std::string script = std::filesystem::absolute(path).string();
    if (!run_program({card_program(), "-m", script, "-c", "save " + saved.path()}, errors.path())) {
        const std::vector<std::string> said = errors.lines();
        throw BadInput("on a card of its own: " + (said.empty() ? "no answer" : said.back()));
    }
    return without_comments(saved.lines());
}

std::vector<std::string> differences(const std::vector<std::string>& before,
                                     const std::vector<std::string>& after)
{
    const std::vector<std::string> had = without_comments(before);
    const std::vector<std::string> has = without_comments(after);
    std::vector<std::string> result;
    add_surplus(result, had, has, "- ");
    add_surplus(result, has, had, "+ ");
    return result;
}

} // namespace vexosh
