// Processes are not forked on Windows, so tests start their own program to see what another one would get.
// With the words
//   --keep-command-line FILE …
// it writes its command line to the file and ends, before anything of the tests begins.
#include <windows.h>

#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <string_view>

#include "base/Text.h"

namespace {

[[maybe_unused]] const bool isKept = [] {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (count < 3 || words[1] != std::wstring_view(L"--keep-command-line")) return false;
    // Whole or not at all, for somebody waits for it.
    const std::filesystem::path file = words[2], part = file.native() + L".part";
    std::ofstream(part, std::ios::binary) << ToUtf8(GetCommandLineW());
    std::filesystem::rename(part, file);
    ExitProcess(0);
}();

}  // namespace
