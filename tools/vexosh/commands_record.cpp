// Driver calls, recorded and made again.
#include "tools/vexosh/shell.h"

namespace vexosh {
namespace {

void start(Shell& shell, Words& words)
{
    const std::string path = words.next("FILE");
    words.end();
    const auto driver = shell.session().driver();
    shell.session().record().start(path);
}

void stop(Shell& shell, Words& words)
{
    words.end();
    const auto driver = shell.session().driver();
    shell.out() << shell.session().record().stop() << '\n';
}

/// Keeps the manager from what the calls of a record do.
class Unmanaged {
public:
    explicit Unmanaged(Session& session) : session_(session) { session_.manage_links(false); }
    Unmanaged(const Unmanaged&) = delete;
    Unmanaged& operator=(const Unmanaged&) = delete;
    ~Unmanaged()
    {
        const auto driver = session_.driver();
        session_.lags().read_active();
        session_.manage_links(true);
    }

private:
    Session& session_;
};

void replay(Shell& shell, Words& words)
{
    const std::string path = words.next("FILE");
    words.end();
    const Unmanaged unmanaged(shell.session());
    shell.run_script_file(path);
}

constexpr Command kCommands[] = {
    {"record start", "FILE",
     "from now on write driver calls that change something, and what they answer, to a file; also "
     "what happens to wires, time and frames",
     start},
    {"record stop", "", "and no longer", stop},
    {"replay calls", "FILE",
     "make recorded calls again; stops at the first that answers something else. Links are left to "
     "the calls meanwhile",
     replay},
};

} // namespace

std::span<const Command> record_commands()
{
    return kCommands;
}

} // namespace vexosh
