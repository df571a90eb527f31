#include "sim/pipeline/outputs.h"

#include <algorithm>

namespace vexosim {

std::uint8_t* FrameArena::take(std::size_t bytes)
{
    while (block_ < blocks_.size() && used_ + bytes > blocks_[block_].bytes) {
        ++block_;
        used_ = 0;
    }
    if (block_ == blocks_.size()) {
        std::size_t size = std::max(bytes, kBlockBytes);
        blocks_.push_back({std::make_unique_for_overwrite<std::uint8_t[]>(size), size});
        used_ = 0;
    }
    std::uint8_t* memory = blocks_[block_].memory.get() + used_;
    used_ += bytes;
    return memory;
}

void Outputs::clear()
{
    for (int port : used_)
        frames_[static_cast<std::size_t>(port)].clear();
    used_ = {};
    arena.clear();
}

} // namespace vexosim
