#include "registry/WindowsResult_msw.h"

#include <windows.h>

#include <string>

namespace {

KeepFailure FailureOf(long error) {
    switch (error) {
        case ERROR_ACCESS_DENIED:
            return KeepFailure::NoAccess;
        case ERROR_WRITE_PROTECT:
            return KeepFailure::ReadOnly;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_NO_SYSTEM_RESOURCES:
            return KeepFailure::DiskFull;
        case ERROR_SHARING_VIOLATION:
            return KeepFailure::Locked;
        case ERROR_BADDB:
        case ERROR_REGISTRY_CORRUPT:
            return KeepFailure::Damaged;
        default:
            return KeepFailure::Failed;
    }
}

}  // namespace

KeepResult ResultOf(long error) {
    if (error == ERROR_SUCCESS) return {};
    return {FailureOf(error), "Windows error " + std::to_string(error)};
}
