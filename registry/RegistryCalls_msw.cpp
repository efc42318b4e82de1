// The nine calls of the system.
#include <windows.h>

#include <algorithm>

#include "base/basText.h"
#include "registry/RegistryCalls.h"

namespace RegistryCalls {

namespace {

HKEY Native(Key key) { return reinterpret_cast<HKEY>(key); }

constexpr std::ptrdiff_t kMostLevels = 512;
constexpr std::size_t kLongestName = 255;

// Looked at before anything is created: the system notices only when it has come that far.
bool IsWithinLimits(const std::string& subKey) {
    if (std::count(subKey.begin(), subKey.end(), '\\') >= kMostLevels) return false;
    for (std::size_t begin = 0; begin <= subKey.size();) {
        const std::size_t end = std::min(subKey.find('\\', begin), subKey.size());
        if (end - begin > kLongestName) return false;
        begin = end + 1;
    }
    return true;
}

int openTransactions = 0;
KeepResult firstFailure;  // among the writing calls since the outermost transaction began

// Remembers why something was not written. That what was to be deleted is not there is no failure.
long Noted(long result) {
    if (result == kSuccess || result == kFileNotFound || !firstFailure.Kept()) return result;
    KeepFailure failure = KeepFailure::Failed;
    switch (result) {
        case ERROR_ACCESS_DENIED:
            failure = KeepFailure::NoAccess;
            break;
        case ERROR_WRITE_PROTECT:
            failure = KeepFailure::ReadOnly;
            break;
        case ERROR_DISK_FULL:
        case ERROR_NO_SYSTEM_RESOURCES:
            failure = KeepFailure::DiskFull;
            break;
        case ERROR_BADDB:
        case ERROR_REGISTRY_CORRUPT:
            failure = KeepFailure::Damaged;
            break;
        default:
            break;
    }
    firstFailure = {failure, "Windows error " + std::to_string(result)};
    return result;
}

BYTE* Bytes(void* data) { return static_cast<BYTE*>(data); }

}  // namespace

long OpenKey(Key parent, const std::string& subKey, std::uint32_t access, Key& result) {
    HKEY key = nullptr;
    const long opened = RegOpenKeyExA(Native(parent), subKey.c_str(), 0, access, &key);
    if (opened == kSuccess) result = reinterpret_cast<Key>(key);
    return access & kSetValue ? Noted(opened) : opened;
}

long CreateKey(Key parent, const std::string& subKey, std::uint32_t access, Key& result) {
    if (!IsWithinLimits(subKey)) return Noted(kInvalidParameter);
    HKEY key = nullptr;
    const long created = RegCreateKeyExA(Native(parent), subKey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                         access, nullptr, &key, nullptr);
    if (created == kSuccess) result = reinterpret_cast<Key>(key);
    return Noted(created);
}

long QueryValue(Key key, const std::string& name, std::uint32_t& type, void* data, std::uint32_t& size) {
    DWORD dataType = type, dataSize = size;
    const long result =
        RegQueryValueExA(Native(key), name.c_str(), nullptr, &dataType, Bytes(data), &dataSize);
    type = dataType;
    size = dataSize;
    return result;
}

long SetValue(Key key, const std::string& name, std::uint32_t type, const void* data, std::uint32_t size) {
    // The call looks behind the end of a text, and stores a NUL that it finds there as well.
    std::string guarded(static_cast<const char*>(data), size);
    guarded += '.';
    return Noted(RegSetValueExA(Native(key), name.c_str(), 0, type, Bytes(guarded.data()), size));
}

long EnumKey(Key key, std::uint32_t index, char* name, std::uint32_t& nameSize) {
    DWORD size = nameSize;
    const long result = RegEnumKeyExA(Native(key), index, name, &size, nullptr, nullptr, nullptr, nullptr);
    nameSize = size;
    return result;
}

long EnumValue(Key key, std::uint32_t index, char* name, std::uint32_t& nameSize, std::uint32_t& type,
               void* data, std::uint32_t& dataSize) {
    DWORD size = nameSize, dataType = type, bytes = dataSize;
    const auto ask = [&](BYTE* buffer) {
        return RegEnumValueA(Native(key), index, name, &size, nullptr, &dataType, buffer, &bytes);
    };
    const long result = ask(Bytes(data));
    if (result == kMoreData) {
        // Some systems then leave out the name, too.
        size = nameSize;
        ask(nullptr);
    }
    nameSize = size;
    type = dataType;
    dataSize = bytes;
    return result;
}

long DeleteKey(Key parent, const std::string& subKey) {
    return Noted(RegDeleteKeyA(Native(parent), subKey.c_str()));
}

long DeleteValue(Key key, const std::string& name) {
    return Noted(RegDeleteValueA(Native(key), name.c_str()));
}

long CloseKey(Key key) { return RegCloseKey(Native(key)); }

// The registry keeps what is written at once, call by call; there is nothing to take back.
void BeginTransaction() {
    if (openTransactions++ == 0) firstFailure = {};
}

KeepResult EndTransaction(bool) {
    --openTransactions;
    return firstFailure;
}

const std::size_t kBytesOfCharacter = 1;

std::string ToCodePage(const std::wstring& text) { return ToAnsi(text); }

std::wstring FromCodePage(const std::string& bytes) { return FromAnsi(bytes); }

}  // namespace RegistryCalls
