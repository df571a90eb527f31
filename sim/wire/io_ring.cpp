#include "sim/wire/io_ring.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/uio.h>

#include <atomic>
#include <cerrno>
#include <utility>

namespace vexosim {

namespace {

// Completions wait for us to ask for them, instead of interrupting: there is one thread.
constexpr unsigned kFlags = IORING_SETUP_SINGLE_ISSUER | IORING_SETUP_DEFER_TASKRUN;
// The end of a TAP, or of a socket, has no position.
constexpr std::uint64_t kNoOffset = ~std::uint64_t{0};

unsigned load(unsigned* position)
{
    return std::atomic_ref(*position).load(std::memory_order_acquire);
}

void store(unsigned* position, unsigned value)
{
    std::atomic_ref(*position).store(value, std::memory_order_release);
}

/// Whether the kernel works through all entries even when one of them fails.
bool goes_on_after_errors(const io_uring_params& params)
{
    return (params.features & IORING_FEAT_NODROP) != 0;
}

} // namespace

IoRing::Mapping::Mapping(int fd, std::size_t bytes, std::uint64_t offset) : bytes_(bytes)
{
    void* memory = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, fd,
                          static_cast<off_t>(offset));
    memory_ = memory == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(memory);
}

IoRing::Mapping::~Mapping()
{
    if (memory_ != nullptr) {
        ::munmap(memory_, bytes_);
    }
}

IoRing* IoRing::of_this_thread()
{
    thread_local const std::unique_ptr<IoRing> ring = open();
    return ring.get(); // NOLINT(clang-analyzer-cplusplus.NewDelete): lives as long as the thread
}

std::unique_ptr<IoRing> IoRing::open()
{
    io_uring_params params{};
    params.flags = kFlags;
    Fd fd(static_cast<int>(::syscall(SYS_io_uring_setup, kTransfers, &params)));
    if (!fd || !goes_on_after_errors(params)) {
        return nullptr;
    }
    std::unique_ptr<IoRing> ring(new IoRing(std::move(fd), params));
    return ring->mapped() ? std::move(ring) : nullptr;
}

IoRing::IoRing(Fd fd, const io_uring_params& params)
    : fd_(std::move(fd)),
      submissions_(fd_.get(), params.sq_off.array + params.sq_entries * sizeof(unsigned),
                   IORING_OFF_SQ_RING),
      completions_(fd_.get(), params.cq_off.cqes + params.cq_entries * sizeof(io_uring_cqe),
                   IORING_OFF_CQ_RING),
      entries_(fd_.get(), params.sq_entries * sizeof(io_uring_sqe), IORING_OFF_SQES)
{
    if (!mapped()) {
        return;
    }
    submission_head_ = submissions_.at<unsigned>(params.sq_off.head);
    submission_tail_ = submissions_.at<unsigned>(params.sq_off.tail);
    completion_head_ = completions_.at<unsigned>(params.cq_off.head);
    completion_tail_ = completions_.at<unsigned>(params.cq_off.tail);
    submission_mask_ = *submissions_.at<unsigned>(params.sq_off.ring_mask);
    completion_mask_ = *completions_.at<unsigned>(params.cq_off.ring_mask);
    completion_ = completions_.at<io_uring_cqe>(params.cq_off.cqes);
    for (unsigned i = 0; i < params.sq_entries; ++i) {
        submissions_.at<unsigned>(params.sq_off.array)[i] = i;
    }
}

void IoRing::prepare(std::uint8_t operation, int fd, std::span<const Transfer> transfers)
{
    const unsigned tail = *submission_tail_;
    for (unsigned i = 0; i < transfers.size(); ++i) {
        io_uring_sqe& entry = entries_.at<io_uring_sqe>(0)[(tail + i) & submission_mask_];
        entry = {};
        entry.opcode = operation;
        entry.fd = fd;
        entry.addr = reinterpret_cast<std::uintptr_t>(transfers[i].bytes);
        entry.len = static_cast<std::uint32_t>(transfers[i].size);
        entry.off = kNoOffset;
        entry.rw_flags = RWF_NOWAIT;
        entry.user_data = i;
    }
    store(submission_tail_, tail + static_cast<unsigned>(transfers.size()));
}

unsigned IoRing::collect(std::span<Transfer> transfers)
{
    const unsigned begin = *completion_head_;
    const unsigned end = load(completion_tail_);
    for (unsigned at = begin; at != end; ++at) {
        const io_uring_cqe& completion = completion_[at & completion_mask_];
        transfers[static_cast<std::size_t>(completion.user_data)].result = completion.res;
    }
    store(completion_head_, end);
    return end - begin;
}

// What the kernel has not looked at yet never happens.
unsigned IoRing::take_back(std::span<Transfer> transfers, int error)
{
    const unsigned head = load(submission_head_);
    const unsigned count = *submission_tail_ - head;
    store(submission_tail_, head);
    for (Transfer& transfer : transfers.last(count)) {
        transfer.result = -error;
    }
    return count;
}

bool IoRing::enter(unsigned wanted)
{
    const unsigned waiting = *submission_tail_ - load(submission_head_);
    return ::syscall(SYS_io_uring_enter, fd_.get(), waiting, wanted, IORING_ENTER_GETEVENTS,
                     nullptr, std::size_t{0}) >= 0 ||
           errno == EINTR;
}

void IoRing::run(std::uint8_t operation, int fd, std::span<Transfer> transfers)
{
    prepare(operation, fd, transfers);
    for (auto left = static_cast<unsigned>(transfers.size()); left > 0;) {
        if (!enter(left)) {
            left -= take_back(transfers, errno);
        }
        left -= collect(transfers);
    }
}

bool IoRing::takes(int fd)
{
    std::uint8_t byte = 0;
    Transfer transfer{&byte, 1};
    read(fd, {&transfer, 1});
    return transfer.result != -EOPNOTSUPP;
}

} // namespace vexosim
