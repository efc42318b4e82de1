#include <windows.h>

#include <stdexcept>

#include "base/DataFolder.h"
#include "tests/support/Support.h"

namespace {

// The roots that the program writes below.
const HKEY kRoots[] = {HKEY_CLASSES_ROOT, HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};

// A test may start another process that shares the folders of its own.
const wchar_t* Host() { return _wgetenv(L"KIVORA_TESTS_OF"); }

std::wstring Owner() { return Host() ? Host() : std::to_wstring(GetCurrentProcessId()); }

std::wstring RegistryFolder() { return L"Software\\KivoraTests\\" + Owner(); }

// For this process a root is an empty key of the user's from now on.
void Redirect(HKEY root, const std::wstring& key) {
    HKEY place = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                        nullptr, &place, nullptr) != ERROR_SUCCESS ||
        RegOverridePredefKey(root, place) != ERROR_SUCCESS)
        throw std::runtime_error("no registry for the tests");
    RegCloseKey(place);
}

}  // namespace

PrivateFolders::PrivateFolders() {
    root_ = std::filesystem::temp_directory_path() / (L"kivora-test-" + Owner());
    std::filesystem::create_directories(root_);
    // The user's own root last: the others lie below it.
    int number = 0;
    for (const HKEY root : kRoots) Redirect(root, RegistryFolder() + L"\\" + std::to_wstring(number++));
    // There Windows looks up where the user's files lie.
    for (const wchar_t* name : {L"AppData", L"Local AppData"})
        RegSetKeyValueW(
            HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders",
            name, REG_SZ, root_.c_str(), static_cast<DWORD>((root_.native().size() + 1) * sizeof(wchar_t)));
    if (SharedDataFolder() != root_) throw std::runtime_error("no folder for the tests' data");
}

PrivateFolders::~PrivateFolders() {
    for (const HKEY root : kRoots) RegOverridePredefKey(root, nullptr);
    if (Host()) return;
    RegDeleteTreeW(HKEY_CURRENT_USER, RegistryFolder().c_str());
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

// Windows has no device that is always full; one that is not there is refused as late.
std::wstring FileWithoutRoom() { return L"Q:\\a.kvr"; }

// Windows keeps others out of the user's profile, in which all folders of the program lie.
bool IsForTheUserOnly(const std::filesystem::path& path) { return std::filesystem::exists(path); }

int CountHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}
