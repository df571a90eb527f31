// Capture files as they are read for wires and by the shell. Input: the file.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "tools/vexosh/capture_file.h"
#include "vexosim/wire.h"

namespace {

/// A file without a place, gone with its descriptor.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* data, std::size_t size)
        : fd_(memfd_create("capture", MFD_CLOEXEC))
    {
        if (fd_ < 0 || write(fd_, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(fd_); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(fd_); }

private:
    int fd_;
};

void read_as_wire(const std::string& path)
{
    const vexosim::OpenedWire opened = vexosim::open_wire("pcap:" + path + ",");
    if (opened.wire == nullptr)
        return;
    vexosim::FrameBatch batch;
    while (opened.wire->receive(batch)) {
        opened.wire->next_time();
        batch.clear();
    }
    opened.wire->notice();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    read_as_wire(file.path());
    try {
        vexosh::read_capture(file.path());
    } catch (const vexosh::BadInput&) { // what a user would see
    }
    return 0;
}
