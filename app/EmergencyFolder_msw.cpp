#include <windows.h>

#include "app/EmergencyFile.h"

namespace fs = std::filesystem;

std::vector<fs::path> EmergencyFolders() {
    wchar_t path[MAX_PATH + 1] = L"";
    const DWORD length = GetTempPathW(MAX_PATH + 1, path);
    if (length == 0 || length > MAX_PATH) return {};
    return {fs::path(path) / L"Kivora"};
}

// It lies in the user's profile, where others cannot write.
bool IsPrivateFolder(const fs::path& folder) {
    std::error_code failed;
    fs::create_directory(folder, failed);
    return fs::is_directory(folder, failed);
}
