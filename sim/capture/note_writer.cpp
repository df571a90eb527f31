#include "sim/capture/note_writer.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <utility>

namespace vexosim {

namespace {

constexpr std::size_t kBuffer = std::size_t{128} * 1024;
constexpr std::size_t kFull = kBuffer - std::size_t{8} * 1024; // what a batch has fits behind it
/// Buffers that lie ready: the thread that forwards shall not wait until the kernel gives memory.
constexpr std::size_t kSpare = 16;
/// Blocks are written by so many bytes: they are then still in the cache.
constexpr std::size_t kWrite = std::size_t{256} * 1024;
/// For so long, notes are gathered: waking the thread for every batch would cost more than they do.
constexpr std::chrono::milliseconds kMoment{5};

/// A reader that goes away is an error of write(), not the end of the program.
void block_sigpipe()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

} // namespace

NoteWriter::NoteWriter(PortSet ports, const PortNames& names,
                       const std::array<std::string, kPortCount>& descriptions, std::size_t memory)
    : maker_(ports, names), most_(std::max(memory / kBuffer, std::size_t{1}))
{
    maker_.put_head(blocks_, descriptions);
}

NoteWriter::~NoteWriter()
{
    stop();
}

std::string NoteWriter::open(const std::string& path)
{
    std::string why = file_.open(path);
    if (why.empty())
        thread_ = std::thread([this] { run(); });
    return why;
}

BlockBuffer& NoteWriter::borrow()
{
    const std::lock_guard lock(mutex_);
    lent_ = true;
    return open_;
}

void NoteWriter::give_back()
{
    std::unique_lock lock(mutex_);
    lent_ = false;
    if (open_.size() < kFull && !idle_)
        return;
    room_.wait(lock, [this] { return !empty_.empty() || made_ < most_; });
    queue_open();
    idle_ = false;
    work_.notify_one();
}

/// Puts an empty buffer in its place.
void NoteWriter::queue_open()
{
    BlockBuffer notes;
    if (!empty_.empty()) {
        notes = std::move(empty_.back());
        empty_.pop_back();
    } else {
        ++made_;
    }
    std::swap(notes, open_);
    full_.push_back(std::move(notes));
}

std::string NoteWriter::close(std::uint64_t time_ns)
{
    stop();
    maker_.put_statistics(blocks_, time_ns);
    flush();
    file_.close();
    return error_;
}

void NoteWriter::stop()
{
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        queue_open();
        stopping_ = true;
        work_.notify_one();
    }
    thread_.join();
}

std::string NoteWriter::error() const
{
    const std::lock_guard lock(mutex_);
    return error_;
}

void NoteWriter::run()
{
    block_sigpipe();
    flush();
    std::unique_lock lock(mutex_);
    make_spare(lock);
    for (;;) {
        if (full_.empty() && !stopping_)
            rest(lock);
        if (full_.empty())
            return;
        BlockBuffer notes = std::move(full_.front());
        full_.pop_front();
        make_spare(lock);
        lock.unlock();
        write(notes.bytes());
        notes.clear();
        lock.lock();
        empty_.push_back(std::move(notes));
        room_.notify_one();
    }
}

void NoteWriter::make_spare(std::unique_lock<std::mutex>& lock)
{
    while (empty_.size() < kSpare && made_ < most_) {
        lock.unlock();
        BlockBuffer spare(kBuffer);
        lock.lock();
        empty_.push_back(std::move(spare));
        ++made_;
        room_.notify_one();
    }
}

/// Until there are notes to write, or no more will come.
void NoteWriter::rest(std::unique_lock<std::mutex>& lock)
{
    const auto woken = [this] { return !full_.empty() || stopping_; };
    if (work_.wait_for(lock, kMoment, woken))
        return;
    if (!lent_ && !open_.empty())
        return queue_open();
    idle_ = true;
    work_.wait(lock, woken);
}

void NoteWriter::write(std::span<const std::uint8_t> notes)
{
    while (!notes.empty()) {
        maker_.put_next(blocks_, notes);
        if (blocks_.size() >= kWrite)
            flush();
    }
    flush();
}

void NoteWriter::flush()
{
    std::string why = error_.empty() ? file_.write(blocks_.bytes()) : std::string{};
    blocks_.clear();
    if (why.empty())
        return;
    const std::lock_guard lock(mutex_);
    error_ = std::move(why);
}

} // namespace vexosim
