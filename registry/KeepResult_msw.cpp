#include <windows.h>

#include "registry/KeepResult.h"

namespace {

KeepFailure KindOf(int error) {
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

KeepResult FailureOf(const std::error_code& error) {
    if (!error) return {};
    // The C++ library has words of its own for what it finds out itself.
    if (error.category() != std::system_category()) return {KeepFailure::Failed, error.message()};
    return {KindOf(error.value()), "Windows error " + std::to_string(error.value())};
}
