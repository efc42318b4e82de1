#include <glib.h>
#include <glib/gstdio.h>

#include "app/Autostart.h"
#include "base/DesktopEntry.h"
#include "base/FileName.h"

namespace {

std::filesystem::path EntryFile() {
    return std::filesystem::path(g_get_user_config_dir()) / "autostart" / "kivora.desktop";
}

}  // namespace

std::wstring AutostartFileName() { return ProgramPath(); }

void EnterInSession(const std::wstring& fileName) {
    const std::filesystem::path file = EntryFile();
    const std::string entry = AutostartEntry(FilePath(fileName).native());
    g_mkdir_with_parents(file.parent_path().c_str(), 0700);
    g_file_set_contents(file.c_str(), entry.data(), static_cast<gssize>(entry.size()), nullptr);
}

void RemoveFromSession() { g_unlink(EntryFile().c_str()); }
