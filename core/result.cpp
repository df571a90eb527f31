#include "core/result.h"

const char* vexolc::sdk_reason(int rc)
{
    return _shr_errmsg[rc <= 0 && rc >= -18 ? -rc : 19];
}
