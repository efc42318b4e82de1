#include <windows.h>

#include <commdlg.h>
#include <wx/toplevel.h>

#include "base/FileName.h"
#include "dialogs/CancelPopup_msw.h"
#include "dialogs/Wait.h"
#include "exchange/ExportPath.h"
#include "exchange/FileDialog.h"

namespace {

constexpr DWORD kLongestName = 32768;
const wchar_t* const kFilter = L"Kivora-Exportdateien (*.kvr)\0*.kvr\0Alle Dateien (*.*)\0*.*\0";

std::filesystem::path lastFolder;  // of this run

}  // namespace

std::optional<std::wstring> ChooseFile(wxTopLevelWindow& owner, const FileDialogOptions& options) {
    const std::filesystem::path folder = lastFolder.empty() ? DocumentsFolder() : lastFolder;
    std::wstring name = options.name;
    name.resize(kLongestName);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner.GetHandle();
    dialog.lpstrFilter = kFilter;
    dialog.lpstrFile = name.data();
    dialog.nMaxFile = kLongestName;
    dialog.lpstrInitialDir = folder.c_str();
    dialog.lpstrTitle = options.DialogTitle.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (options.save) {
        dialog.lpstrDefExt = L"kvr";  // for a name that is typed without one
        if (!options.name.empty()) dialog.Flags |= OFN_OVERWRITEPROMPT;
    } else {
        dialog.Flags |= OFN_FILEMUSTEXIST;
    }

    const EndedWithWaits endedWithWaits([&] { CancelPopupOf(dialog.hwndOwner); });
    const bool chosen = options.save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog);
    if (!chosen || IsQuitting()) return std::nullopt;
    const std::filesystem::path file = name.c_str();
    lastFolder = file.parent_path();
    return FileName(file);
}
