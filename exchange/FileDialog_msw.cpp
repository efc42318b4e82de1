#include <windows.h>

#include <commdlg.h>
#include <wx/toplevel.h>

#include "base/FileName.h"
#include "base/basWait.h"
#include "exchange/ExportPath.h"
#include "exchange/FileDialog.h"

namespace {

constexpr DWORD kLongestName = 32768;
const wchar_t* const kFilter = L"Kivora-Exportdateien (*.kvr)\0*.kvr\0Alle Dateien (*.*)\0*.*\0";

std::filesystem::path lastFolder;  // of this run

// The dialog runs a loop of its own, which knows nothing of the program's end.
class ClosedAtEnd {
  public:
    explicit ClosedAtEnd(wxTopLevelWindow& owner) : owner_(owner) {
        owner_.Bind(wxEVT_IDLE, &ClosedAtEnd::OnIdle, this);
    }
    ~ClosedAtEnd() { owner_.Unbind(wxEVT_IDLE, &ClosedAtEnd::OnIdle, this); }
    ClosedAtEnd(const ClosedAtEnd&) = delete;
    ClosedAtEnd& operator=(const ClosedAtEnd&) = delete;

  private:
    void OnIdle(wxIdleEvent&) {
        const HWND window = owner_.GetHandle();
        const HWND popup = GetLastActivePopup(window);
        if (IsQuitting() && popup != window) PostMessageW(popup, WM_COMMAND, IDCANCEL, 0);
    }

    wxTopLevelWindow& owner_;
};

}  // namespace

std::optional<std::wstring> ChooseFile(wxTopLevelWindow& owner, const FileDialogOptions& options) {
    const std::filesystem::path folder = lastFolder.empty() ? DocumentsFolder() : lastFolder;
    std::wstring name(kLongestName, L'\0');
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner.GetHandle();
    dialog.lpstrFilter = kFilter;
    dialog.lpstrFile = name.data();
    dialog.nMaxFile = kLongestName;
    dialog.lpstrInitialDir = folder.c_str();
    dialog.lpstrTitle = options.DialogTitle.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (!options.save) dialog.Flags |= OFN_FILEMUSTEXIST;

    const ClosedAtEnd closedAtEnd(owner);
    const bool chosen = options.save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog);
    if (!chosen || IsQuitting()) return std::nullopt;
    const std::filesystem::path file = name.c_str();
    lastFolder = file.parent_path();
    return FileName(file);
}
