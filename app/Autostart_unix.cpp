#include <glib.h>

#include "app/Autostart.h"
#include "base/DesktopEntry.h"
#include "base/FileName.h"
#include "base/NewFile.h"
#include "model/KeepReason.h"

namespace {

std::filesystem::path EntryFile() {
    return std::filesystem::path(g_get_user_config_dir()) / "autostart" / "kivora.desktop";
}

}  // namespace

KeepResult EnterInSession() {
    const std::filesystem::path file = EntryFile(), unfinished = file.parent_path() / ".kivora.desktop.neu";
    g_mkdir_with_parents(file.parent_path().c_str(), 0700);
    std::error_code failed;
    std::filesystem::remove(unfinished, failed);  // of a start that was broken off
    failed = WriteNewFile(unfinished, AutostartEntry(FilePath(ProgramPath()).native()));
    if (!failed) std::filesystem::rename(unfinished, file, failed);
    return FailureOf(failed);
}

KeepResult RemoveFromSession() {
    std::error_code failed;
    std::filesystem::remove(EntryFile(), failed);
    return FailureOf(failed);
}

bool StartsWithSession(bool flag) { return flag; }
