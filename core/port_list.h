#pragma once

#include <bcmx/lplist.h>

#include "core/result.h"

namespace vexolc {

/// A list of lports for the SDK, freed on every path.
class PortList {
public:
    /// Without storage of its own until ports are added.
    PortList() { bcmx_lplist_t_init(&list_); }

    /// With room for `capacity` ports; `valid` tells whether the SDK could make it.
    explicit PortList(int capacity) : valid_(ok(bcmx_lplist_init(&list_, capacity, 0))) {}

    /// The same; not tried when the list before it could not be made.
    PortList(int capacity, const PortList& before)
        : valid_(before.valid() && ok(bcmx_lplist_init(&list_, capacity, 0)))
    {
    }

    ~PortList()
    {
        if (valid_)
            bcmx_lplist_free(&list_);
    }

    PortList(const PortList&) = delete;
    PortList& operator=(const PortList&) = delete;

    bool valid() const { return valid_; }
    bool add(int lport) { return ok(bcmx_lplist_add(&list_, lport)); }

    /// Frees the list now; false when the SDK fails to, which is not tried again.
    bool free()
    {
        valid_ = false;
        return ok(bcmx_lplist_free(&list_));
    }

    /// For SDK calls.
    bcmx_lplist_t* get() { return &list_; }

    /// For walking with `BCMX_LPLIST_ITER`.
    const bcmx_lplist_t& list() const { return list_; }

private:
    bcmx_lplist_t list_ = {};
    bool valid_ = true;
};

} // namespace vexolc
