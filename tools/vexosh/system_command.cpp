#include "tools/vexosh/system_command.h"

#include <sys/wait.h>

#include <cstdio>
#include <iostream>

#include "tools/vexosh/input.h"

namespace vexosh {

void run_system_command(const std::vector<std::string>& words,
                        const std::function<void(std::string_view)>& print)
{
    std::string command;
    for (const std::string& word : words) {
        command += (command.empty() ? "" : " ") + word;
    }
    std::cout.flush();
    FILE* const output = popen(("{ " + command + "\n} 2>&1 </dev/null").c_str(), "re");
    if (output == nullptr) {
        throw BadInput("the system starts no more commands");
    }
    char* line = nullptr;
    std::size_t room = 0;
    for (ssize_t size = 0; (size = getline(&line, &room, output)) >= 0;) {
        print({line, static_cast<std::size_t>(size)});
    }
    free(line);
    const int status = pclose(output);
    if (status != 0) {
        throw BadInput(WIFEXITED(status)
                           ? "the command ended with status " + std::to_string(WEXITSTATUS(status))
                           : "the command was ended");
    }
}

} // namespace vexosh
