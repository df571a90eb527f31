// The manual of the shell is a session that works.
#include <filesystem>

#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/differences.h"
#include "tools/vexosh/grammar.h"

using namespace vexosh;

namespace {

std::string manual()
{
    std::ifstream file(VEXOSH_MANUAL);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines of the manual's sessions.
std::vector<std::string> session_lines()
{
    std::vector<std::string> lines;
    std::istringstream text(manual());
    bool inside = false;
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with("```")) {
            inside = line == "```vexosh";
        } else if (inside) {
            lines.push_back(line);
        }
    }
    return lines;
}

} // namespace

TEST_F(ShellTest, EveryCommandOfTheManualWorksAsItStands)
{
    set_card_program(VEXOSH_PROGRAM);
    ASSERT_GT(session_lines().size(), 100u);
    std::filesystem::current_path(VEXO_SOURCE_DIR); // where its captures are
    for (const std::string& line : session_lines()) {
        EXPECT_EQ(error_of(line), "no error") << line;
    }
    EXPECT_TRUE(shell_->finished()) << "the session was not run to its end";
}

TEST(Manual, NamesEveryCommand)
{
    const std::string text = manual();
    for (const Command* command : all_commands()) {
        EXPECT_NE(text.find(command->words), std::string::npos) << command->words;
    }
}
