#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "app/EmergencyFile.h"
#include "base/NewFile.h"

namespace fs = std::filesystem;

std::vector<fs::path> EmergencyFolders() {
    const std::string own = "kivora-" + std::to_string(geteuid());
    std::vector<fs::path> folders;
    // The runtime folder goes when its user has logged out, and /tmp often with the next start of the
    // machine.
    const char* const temporary = std::getenv("TMPDIR");
    for (const char* folder : {temporary, "/var/tmp", "/tmp"}) {
        if (folder && *folder == '/') folders.push_back(fs::path(folder) / own);
    }
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime && *runtime == '/') folders.push_back(fs::path(runtime) / "kivora");
    return folders;
}

bool IsPrivateFolder(const fs::path& folder) {
    std::error_code failed;
    if (fs::is_directory(folder.parent_path(), failed)) failed = MakeFolder(folder);
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (opened < 0) return false;
    struct stat status {};
    const bool own = fstat(opened, &status) == 0 && status.st_uid == geteuid() && (status.st_mode & 077) == 0;
    close(opened);
    return own;
}
