#include <windows.h>

#include "registry/KeepResult.h"

namespace {

constexpr int kDiskQuotaExceeded = 1295;  // ERROR_DISK_QUOTA_EXCEEDED, which not every SDK names

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
        case kDiskQuotaExceeded:
            return KeepFailure::OverQuota;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return KeepFailure::Locked;
        case ERROR_CRC:
        case ERROR_IO_DEVICE:
        case ERROR_NOT_READY:
        case ERROR_REGISTRY_IO_FAILED:
            return KeepFailure::BadDisk;
        case ERROR_DIRECTORY:
        case ERROR_ALREADY_EXISTS:
        case ERROR_FILE_EXISTS:
            return KeepFailure::NoFile;
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
    if (error.category() == std::system_category())
        return {KindOf(error.value()), "Windows error " + std::to_string(error.value()), error.value()};
    // The C++ library has numbers of its own for what it finds out itself.
    const KeepFailure failure = error == std::errc::permission_denied       ? KeepFailure::NoAccess
                                : error == std::errc::read_only_file_system ? KeepFailure::ReadOnly
                                : error == std::errc::no_space_on_device    ? KeepFailure::DiskFull
                                : error == std::errc::file_too_large        ? KeepFailure::DiskFull
                                : error == std::errc::io_error              ? KeepFailure::BadDisk
                                : error == std::errc::is_a_directory        ? KeepFailure::NoFile
                                                                            : KeepFailure::Failed;
    return {failure, error.message(), error.value()};
}
