/// @file
/// Of the process that measures: its time, and how it treats memory.
#pragma once

#include <malloc.h>
#include <time.h>

/// Of this process's time on a core, in seconds.
inline double seconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Freed memory is kept: what the kernel takes to give pages and to take them is not measured. Each
/// piece is merged with its neighbours as it is freed, not thousands of them at a later time.
inline void keep_freed_memory()
{
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_MXFAST, 0);
}
