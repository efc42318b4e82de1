#include <glib.h>

#include "app/Autostart.h"
#include "base/DesktopEntry.h"
#include "base/FileName.h"
#include "base/NewFile.h"

namespace {

std::filesystem::path EntryFile() {
    return std::filesystem::path(g_get_user_config_dir()) / "autostart" / "kivora.desktop";
}

}  // namespace

KeepResult EnterInSession() {
    const std::filesystem::path file = EntryFile();
    g_mkdir_with_parents(file.parent_path().c_str(), 0700);
    return FailureOf(SaveFile(file, AutostartEntry(FilePath(ProgramPath()).native())));
}

KeepResult RemoveFromSession() {
    std::error_code failed;
    std::filesystem::remove(EntryFile(), failed);
    return FailureOf(failed);
}

bool StartsWithSession(bool flag) { return flag; }
