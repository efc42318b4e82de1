// The words with which tests start their own program:
//   --keep-command-line FILE …   writes its command line to the file
//   --hand-over NAME…            hands names over, 0 when all were taken
//   --hold-role EVENT            is the running copy, which it tells by the event, until it is killed
#include <windows.h>

#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/HandOver.h"
#include "base/Text.h"
#include "tests/support/OtherTask.h"

namespace {

std::vector<std::wstring> Words() {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> result(words, words + count);
    LocalFree(words);
    return result;
}

int KeepCommandLine(const std::filesystem::path& file) {
    // Whole or not at all, for somebody waits for it.
    const std::filesystem::path part = file.native() + L".part";
    std::ofstream(part, std::ios::binary) << ToUtf8(GetCommandLineW());
    std::filesystem::rename(part, file);
    return 0;
}

int HandOverAll(const std::vector<std::wstring>& words) {
    for (std::size_t i = 2; i < words.size(); ++i) {
        if (!HandOver(words[i])) return 1;
    }
    return 0;
}

int HoldRole(const std::wstring& event) {
    const auto role = RunningCopy::Claim();
    const HANDLE ready = OpenEventW(EVENT_MODIFY_STATE, FALSE, event.c_str());
    if (!role || !ready) return 1;
    SetEvent(ready);
    Sleep(INFINITE);
    return 0;
}

}  // namespace

std::optional<int> OtherTask() {
    const std::vector<std::wstring> words = Words();
    if (words.size() < 3) return std::nullopt;
    if (words[1] == L"--keep-command-line") return KeepCommandLine(words[2]);
    if (words[1] == L"--hand-over") return HandOverAll(words);
    if (words[1] == L"--hold-role") return HoldRole(words[2]);
    return std::nullopt;
}
