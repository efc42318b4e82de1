#include <windows.h>

#include <stdexcept>
#include <system_error>

#include "base/FileName.h"
#include "tests/app/OtherCopy.h"

struct OtherCopy::Process {
    PROCESS_INFORMATION information{};

    explicit Process(const std::wstring& words) {
        std::wstring line = L"\"" + ProgramPath() + L"\" " + words;
        STARTUPINFOW start{};
        start.cb = sizeof start;
        if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                            &information))
            throw std::system_error(static_cast<int>(GetLastError()), std::system_category(),
                                    "the other copy does not start");
    }
    ~Process() {
        CloseHandle(information.hThread);
        CloseHandle(information.hProcess);
    }
};

OtherCopy::OtherCopy(std::unique_ptr<Process> process) : process_(std::move(process)) {}
OtherCopy::OtherCopy(OtherCopy&& other) noexcept = default;
OtherCopy::~OtherCopy() {
    if (process_ && !Ended()) Kill();
}

OtherCopy OtherCopy::Sender(const std::vector<std::wstring>& names) {
    std::wstring words = L"--hand-over";
    for (const std::wstring& name : names) words += L" \"" + name + L"\"";
    return OtherCopy(std::make_unique<Process>(words));
}

OtherCopy OtherCopy::Holder() {
    const std::wstring event = L"KivoraTestsRole";
    const HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, event.c_str());
    auto process = std::make_unique<Process>(L"--hold-role " + event);
    const bool held = WaitForSingleObject(ready, 10'000) == WAIT_OBJECT_0;
    CloseHandle(ready);
    if (!held) throw std::runtime_error("the other copy did not get the role");
    return OtherCopy(std::move(process));
}

void OtherCopy::Kill() {
    TerminateProcess(process_->information.hProcess, 9);
    WaitForSingleObject(process_->information.hProcess, INFINITE);
}

bool OtherCopy::Ended() { return WaitForSingleObject(process_->information.hProcess, 0) == WAIT_OBJECT_0; }

int OtherCopy::Result() const {
    DWORD code = 0;
    GetExitCodeProcess(process_->information.hProcess, &code);
    return static_cast<int>(code);
}

std::vector<std::wstring> NamesOfAllKinds() {
    return {L"C:\\Eigene Notizen\\ä ö ü €.kvr", L"\\\\rechner\\freigabe\\'a' & b.kvr", L"C:\\[print]",
            L"C:\\" + std::wstring(4000, L'x')};
}

// Windows opens no more files at once without asking.
int ManyCopies() { return 15; }
