#include <glib.h>
#include <unistd.h>

#include "base/FileName.h"
#include "exchange/ExportPath.h"

std::filesystem::path TypedPath(const std::wstring& name) {
    const bool atHome = name == L"~" || name.starts_with(L"~/");
    if (!atHome) return FilePath(name);
    return g_get_home_dir() + FilePath(name.substr(1)).native();
}

bool IsOnlyWriteProtected(const std::filesystem::path& path) {
    using std::filesystem::perms;
    std::error_code unknown;
    const std::filesystem::file_status status = std::filesystem::status(path, unknown);
    if (status.type() != std::filesystem::file_type::regular) return false;
    const bool hidden = path.filename().native().starts_with('.');
    // The mark binds root, too, who may write everywhere.
    const perms anybodyWrites = perms::owner_write | perms::group_write | perms::others_write;
    const bool marked =
        (status.permissions() & anybodyWrites) == perms::none || access(path.c_str(), W_OK) != 0;
    return marked && !hidden;
}

std::filesystem::path DocumentsFolder() {
    const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    return documents ? documents : g_get_home_dir();
}
