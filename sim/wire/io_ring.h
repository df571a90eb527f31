#pragma once

#include <linux/io_uring.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "sim/wire/fd.h"

namespace vexosim {

/// Many reads or many writes of one descriptor for the price of one system call (io_uring). Belongs
/// to one thread.
class IoRing {
public:
    static constexpr unsigned kTransfers = 64;

    /// Bytes of one read or write, and what became of it.
    struct Transfer {
        std::uint8_t* bytes = nullptr;
        std::size_t size = 0;
        int result = 0; ///< bytes transferred, or a negative errno
    };

    /// The calling thread's own; null where the system has none or does not let us have one.
    static IoRing* of_this_thread();
    /// Null as above.
    static std::unique_ptr<IoRing> open();

    /// At most kTransfers of them, in order. None waits: with nothing to read the result is
    /// -EAGAIN.
    void read(int fd, std::span<Transfer> transfers) { run(IORING_OP_READ, fd, transfers); }
    void write(int fd, std::span<Transfer> transfers) { run(IORING_OP_WRITE, fd, transfers); }

    /// Whether a descriptor can be read without waiting. Reads a byte of it.
    bool takes(int fd);

private:
    /// Memory shared with the kernel.
    class Mapping {
    public:
        Mapping(int fd, std::size_t bytes, std::uint64_t offset);
        Mapping(const Mapping&) = delete;
        Mapping& operator=(const Mapping&) = delete;
        ~Mapping();
        explicit operator bool() const { return memory_ != nullptr; }
        template <class T>
        T* at(std::size_t offset) const
        {
            return reinterpret_cast<T*>(memory_ + offset);
        }

    private:
        std::uint8_t* memory_;
        std::size_t bytes_;
    };

    IoRing(Fd fd, const io_uring_params& params);
    bool mapped() const { return submissions_ && completions_ && entries_; }
    void run(std::uint8_t operation, int fd, std::span<Transfer> transfers);
    void prepare(std::uint8_t operation, int fd, std::span<const Transfer> transfers);
    unsigned collect(std::span<Transfer> transfers);
    unsigned take_back(std::span<Transfer> transfers, int error);
    bool enter(unsigned wanted);

    Fd fd_;
    Mapping submissions_, completions_, entries_;
    // Positions count up for ever; the kernel moves the heads, we the tails, of submissions; of
    // completions the other way round.
    unsigned *submission_head_, *submission_tail_, *completion_head_, *completion_tail_;
    unsigned submission_mask_, completion_mask_;
    io_uring_cqe* completion_;
};

} // namespace vexosim
