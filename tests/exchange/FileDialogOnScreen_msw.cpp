#include <windows.h>

#include <commdlg.h>
#include <dlgs.h>

#include "tests/exchange/FileDialogOnScreen.h"

namespace {

std::filesystem::path FolderOf(HWND window) {
    wchar_t folder[MAX_PATH] = L"";
    SendMessageW(window, CDM_GETFOLDERPATH, MAX_PATH, reinterpret_cast<LPARAM>(folder));
    return folder;
}

BOOL CALLBACK LookForDialog(HWND window, LPARAM found) {
    wchar_t type[16] = L"";
    GetClassNameW(window, type, 16);
    if (std::wstring(type) != L"#32770" || !IsWindowVisible(window) || FolderOf(window).empty()) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

std::unique_ptr<FileDialogOnScreen> FileDialogOnScreen::Find() {
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), LookForDialog, reinterpret_cast<LPARAM>(&found));
    return std::unique_ptr<FileDialogOnScreen>(found ? new FileDialogOnScreen(found) : nullptr);
}

std::wstring FileDialogOnScreen::Title() const {
    wchar_t title[256] = L"";
    GetWindowTextW(static_cast<HWND>(window_), title, 256);
    return title;
}

std::filesystem::path FileDialogOnScreen::Folder() const { return FolderOf(static_cast<HWND>(window_)); }

void FileDialogOnScreen::Choose(const std::filesystem::path& file) {
    const auto window = static_cast<HWND>(window_);
    for (const WPARAM box : {cmb13, edt1})
        SendMessageW(window, CDM_SETCONTROLTEXT, box, reinterpret_cast<LPARAM>(file.c_str()));
    PostMessageW(window, WM_COMMAND, IDOK, 0);
}

void FileDialogOnScreen::Cancel() { PostMessageW(static_cast<HWND>(window_), WM_COMMAND, IDCANCEL, 0); }
