#include <cerrno>

#include "registry/KeepResult.h"

namespace {

KeepFailure KindOf(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return KeepFailure::NoAccess;
        case EROFS:
            return KeepFailure::ReadOnly;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return KeepFailure::DiskFull;
        default:
            return KeepFailure::Failed;
    }
}

}  // namespace

KeepResult FailureOf(const std::error_code& error) {
    if (!error) return {};
    return {KindOf(error.value()), error.message()};
}
