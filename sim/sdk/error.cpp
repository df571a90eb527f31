#include <bcm/error.h>

extern "C" {
const char* _shr_errmsg[BCM_ERRMSG_COUNT] = {
    "Ok",
    "Internal error",
    "Out of memory",
    "Invalid unit",
    "Invalid parameter",
    "Table empty",
    "Table full",
    "Entry not found",
    "Entry exists",
    "Operation timed out",
    "Operation still running",
    "Operation failed",
    "Operation disabled",
    "Invalid identifier",
    "No resources for operation",
    "Invalid configuration",
    "Feature unavailable",
    "Feature not initialized",
    "Invalid port",
    "Unknown error",
};
}
