// The instance factory. The instance is kept by its concrete type, because the interface has no
// virtual destructor.
#include "core/factory.h"

VexoBcmSdk* bcm_sdk = nullptr;

namespace {

void destroy_instance()
{
// The concrete type is what was allocated; there is no virtual destructor to miss.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor"
    delete bcm_sdk;
#pragma GCC diagnostic pop
    bcm_sdk = nullptr;
}

} // namespace

bool vexosdk_create_sdk_instance()
{
    destroy_instance();
    bcm_sdk = new VexoBcmSdk;
    return bcm_sdk != nullptr;
}

bool vexosdk_get_sdk_instance(VexoSdkBase*& out)
{
    if (bcm_sdk == nullptr)
        return false;
    out = bcm_sdk;
    return true;
}

bool vexosdk_delete_sdk_instance(VexoSdkBase*)
{
    destroy_instance();
    return true;
}
