#include <windows.h>

#include <shlobj.h>

#include "base/FileName.h"
#include "exchange/ExportPath.h"

std::filesystem::path TypedPath(const std::wstring& name) { return FilePath(name); }

bool IsOnlyWriteProtected(const std::filesystem::path& path) {
    return GetFileAttributesW(path.c_str()) == FILE_ATTRIBUTE_READONLY;
}

std::filesystem::path DocumentsFolder() {
    wchar_t path[MAX_PATH] = L"";
    SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, path);
    return path;
}
