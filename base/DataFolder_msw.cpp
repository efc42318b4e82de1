#include <windows.h>

#include <shlobj.h>

#include "base/DataFolder.h"

std::filesystem::path SharedDataFolder() {
    wchar_t path[MAX_PATH] = L"";
    if (SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) return {};
    return path;
}

std::filesystem::path DataFolder() {
    const std::filesystem::path shared = SharedDataFolder();
    return shared.empty() ? shared : shared / L"Kivora";
}
