// The words with which tests start their own program:
//   --keep-command-line FILE …   writes its command line to the file
#include <windows.h>

#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

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

}  // namespace

std::optional<int> OtherTask() {
    const std::vector<std::wstring> words = Words();
    if (words.size() < 3) return std::nullopt;
    if (words[1] == L"--keep-command-line") return KeepCommandLine(words[2]);
    return std::nullopt;
}
