#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/NewFile.h"

namespace {

std::error_code LastError() { return {errno, std::generic_category()}; }

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return fsync(file) == 0;
}

// A new name is on the disk once its folder has been synchronized. Some file systems cannot do that for
// folders; then the name is kept with the file system's next write, which is all that there is.
void KeepName(const std::filesystem::path& folder) {
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0) return;
    fsync(opened);
    close(opened);
}

}  // namespace

std::error_code WriteNewFile(const std::filesystem::path& file, std::string_view bytes) {
    const int made = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (made < 0) return LastError();
    std::error_code failed;
    if (!WriteAll(made, bytes)) failed = LastError();
    if (close(made) != 0 && !failed) failed = LastError();
    if (failed) {
        unlink(file.c_str());
    } else {
        KeepName(file.parent_path());
    }
    return failed;
}

std::error_code MakeFolder(const std::filesystem::path& folder) {
    std::error_code failed;
    if (std::filesystem::is_directory(folder, failed)) return {};
    const std::filesystem::path above = folder.parent_path();
    if (above != folder) failed = MakeFolder(above);
    if (failed) return failed;
    if (mkdir(folder.c_str(), 0700) == 0) {
        KeepName(above);
        return {};
    }
    const std::error_code refused = LastError();
    // Another program may have made it meanwhile.
    return std::filesystem::is_directory(folder, failed) ? std::error_code() : refused;
}
