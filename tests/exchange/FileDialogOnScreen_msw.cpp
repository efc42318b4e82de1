#include <windows.h>

#include <commdlg.h>
#include <dlgs.h>

#include "tests/exchange/FileDialogOnScreen.h"

namespace {

class CommonFileDialog : public FileDialogOnScreen {
  public:
    explicit CommonFileDialog(HWND window) : window_(window) {}

    std::wstring Title() const override {
        wchar_t title[256] = L"";
        GetWindowTextW(window_, title, 256);
        return title;
    }
    std::filesystem::path Folder() const override { return FolderOf(window_); }
    void Enter(const std::filesystem::path& file) override {
        SendMessageW(window_, CDM_SETCONTROLTEXT, cmb13, reinterpret_cast<LPARAM>(file.c_str()));
        SendMessageW(window_, CDM_SETCONTROLTEXT, edt1, reinterpret_cast<LPARAM>(file.c_str()));
    }
    void Accept() override { PostMessageW(window_, WM_COMMAND, IDOK, 0); }
    void Cancel() override { PostMessageW(window_, WM_COMMAND, IDCANCEL, 0); }

    static std::filesystem::path FolderOf(HWND window) {
        wchar_t folder[MAX_PATH] = L"";
        SendMessageW(window, CDM_GETFOLDERPATH, MAX_PATH, reinterpret_cast<LPARAM>(folder));
        return folder;
    }

  private:
    HWND window_;
};

BOOL CALLBACK LookForDialog(HWND window, LPARAM found) {
    wchar_t type[16] = L"";
    GetClassNameW(window, type, 16);
    if (std::wstring(type) != L"#32770" || !IsWindowVisible(window)) return TRUE;
    if (CommonFileDialog::FolderOf(window).empty()) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

std::unique_ptr<FileDialogOnScreen> FileDialogOnScreen::Find() {
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), LookForDialog, reinterpret_cast<LPARAM>(&found));
    if (!found) return nullptr;
    return std::make_unique<CommonFileDialog>(found);
}
