# vexo_atomic: whatever 64-bit atomics need at link time (libatomic on 32-bit targets).
include(CheckCXXSourceCompiles)
set(CMAKE_CXX_STANDARD 17)
check_cxx_source_compiles("
    #include <atomic>
    #include <cstdint>
    std::atomic<std::uint64_t> n{0};
    int main() { return static_cast<int>(n.fetch_add(1) + n.load()); }
" VEXOLC_ATOMIC64_IN_COMPILER)
unset(CMAKE_CXX_STANDARD)

add_library(vexo_atomic INTERFACE)
if(NOT VEXOLC_ATOMIC64_IN_COMPILER)
  target_link_libraries(vexo_atomic INTERFACE atomic)
endif()
