#include "registry/ReplaceKey_msw.h"

#include <windows.h>

#include <shlobj.h>

#include <filesystem>
#include <system_error>

#include "base/NewFile.h"
#include "registry/ReplaceKey.h"
#include "registry/RewriteJournal.h"
#include "registry/WindowsResult_msw.h"

namespace {

namespace fs = std::filesystem;

KeepResult completed;  // what the last CompleteKey said

// Whether Windows redirects what this process writes for all users to a place of the user's own. With an
// administrator's rights the same user writes to another place, and has another journal for it.
bool IsRedirected() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return false;
    DWORD redirected = FALSE, size = 0;
    GetTokenInformation(token, TokenVirtualizationEnabled, &redirected, sizeof redirected, &size);
    CloseHandle(token);
    return redirected;
}

// In the part of the user's profile that stays on this machine, like the registry. Empty without a profile.
fs::path JournalFile() {
    wchar_t folder[MAX_PATH] = L"";
    if (SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT,
                         folder) != S_OK)
        return {};
    return fs::path(folder) / L"Kivora" / (IsRedirected() ? L"redirected.journal" : L"registry.journal");
}

KeepResult WriteJournal(const fs::path& file, const RewriteJournal& journal) {
    if (file.empty()) return {KeepFailure::NoAccess, "no folder for the user's files"};
    CreateDirectoryW(file.parent_path().c_str(), nullptr);
    return FailureOf(SaveFile(file, BytesOf(journal)));
}

// Nothing for a file that has gone; a failure when it is there and cannot be read for now.
KeepResult ReadAll(const fs::path& file, std::string& bytes) {
    const HANDLE opened = CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        const bool gone = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        return gone ? KeepResult() : ResultOf(static_cast<long>(error));
    }
    char part[4096];
    DWORD size = 0;
    bool read = false;
    while ((read = ReadFile(opened, part, sizeof part, &size, nullptr)) && size > 0) bytes.append(part, size);
    const KeepResult result = read ? KeepResult() : ResultOf(static_cast<long>(GetLastError()));
    CloseHandle(opened);
    return result;
}

// The path of the mark: what a key without its last backslash is to the one above it, a value is, too.
std::wstring MarkOf(const std::wstring& key) { return key.substr(0, key.size() - 1); }

std::wstring ReadMark(const std::wstring& key) {
    return AsText(Registry().GetValue(MarkOf(key), REG_TYPE_SZ));
}

// Each step is taken only when the one before has succeeded: so the mark stands, and the journal lies there,
// until the key is whole on the disk.
KeepResult Rewrite(const std::wstring& key, const RewriteJournal& journal, const fs::path& file) {
    const auto step = [](const auto& work) {
        RegistryTransaction writing;
        work();
        return writing.Commit();
    };
    RegistryTransaction whole;
    KeepResult result = step([&] { Registry().SetValue(MarkOf(key), REG_TYPE_SZ, journal.mark); });
    if (result.Kept()) result = step([&] { WriteKey(key, journal.content); });
    if (!result.Kept()) return result;
    Registry().DeleteValue(MarkOf(key));
    result = whole.Commit();
    if (result.Kept()) DeleteFileW(file.c_str());
    return result;
}

}  // namespace

KeepResult ReplaceKey(const std::wstring& key, const KeyContent& content) {
    if (!completed.Kept()) return completed;
    // Where a rewriting failed, its mark stands until one succeeds, and every journal since goes with it.
    RewriteJournal journal{ReadMark(key), content};
    if (journal.mark.empty()) journal.mark = NewMark(content);
    const fs::path file = JournalFile();
    const KeepResult written = WriteJournal(file, journal);
    return written.Kept() ? Rewrite(key, journal, file) : written;
}

KeepResult CompleteKey(const std::wstring& key) {
    completed = {};
    const std::wstring mark = ReadMark(key);
    if (mark.empty()) return completed;
    const fs::path file = JournalFile();
    std::string bytes;
    completed = ReadAll(file, bytes);
    const auto journal = JournalOf(bytes);
    if (completed.Kept() && journal && journal->mark == mark) completed = Rewrite(key, *journal, file);
    return completed;
}

const KeepResult& LastCompletion() { return completed; }
