#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "base/DataFolder.h"

namespace fs = std::filesystem;

fs::path SharedDataFolder() {
    const char* const data = std::getenv("XDG_DATA_HOME");
    const fs::path folder = data ? data : "";
    if (folder.is_absolute()) return folder;
    const char* home = std::getenv("HOME");
    if (!home || !*home) {
        const passwd* const user = getpwuid(getuid());
        home = user ? user->pw_dir : nullptr;
    }
    if (!home || !fs::path(home).is_absolute()) return {};
    return fs::path(home) / ".local" / "share";
}

fs::path DataFolder() {
    const fs::path shared = SharedDataFolder();
    return shared.empty() ? shared : shared / "kivora";
}
