#include <windows.h>

#include <stdexcept>

#include "tests/support/Support.h"

namespace {

// The roots that the program writes below.
const HKEY kRoots[] = {HKEY_CLASSES_ROOT, HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};

std::wstring RegistryFolder() { return L"Software\\KivoraTests\\" + std::to_wstring(GetCurrentProcessId()); }

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
    root_ =
        std::filesystem::temp_directory_path() / (L"kivora-test-" + std::to_wstring(GetCurrentProcessId()));
    std::filesystem::create_directories(root_);
    // The user's own root last: the others lie below it.
    int number = 0;
    for (const HKEY root : kRoots) Redirect(root, RegistryFolder() + L"\\" + std::to_wstring(number++));
}

PrivateFolders::~PrivateFolders() {
    for (const HKEY root : kRoots) RegOverridePredefKey(root, nullptr);
    RegDeleteTreeW(HKEY_CURRENT_USER, RegistryFolder().c_str());
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}
