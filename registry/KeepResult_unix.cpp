#include <cerrno>

#include "registry/KeepResult.h"

KeepResult FailureOf(const std::error_code& error) {
    KeepFailure failure = KeepFailure::Failed;
    switch (error.value()) {
        case 0:
            return {};
        case EACCES:
        case EPERM:
            failure = KeepFailure::NoAccess;
            break;
        case EROFS:
            failure = KeepFailure::ReadOnly;
            break;
        case ENOSPC:
        case EFBIG:
            failure = KeepFailure::DiskFull;
            break;
        case EDQUOT:
            failure = KeepFailure::OverQuota;
            break;
        case EIO:
            failure = KeepFailure::BadDisk;
            break;
        case EISDIR:
        case ENOTDIR:
        case EEXIST:
            failure = KeepFailure::NoFile;
            break;
        default:
            break;
    }
    return {failure, error.message(), error.value()};
}
