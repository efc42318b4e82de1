#include <windows.h>

#include <algorithm>

#include "base/Text.h"
#include "registry/RegistryCalls.h"
#include "registry/WindowsResult_msw.h"

namespace RegistryCalls {

namespace {

constexpr std::ptrdiff_t kMostLevels = 512;
constexpr std::size_t kLongestName = 255;

int openTransactions = 0;
KeepResult firstFailure;         // among the writing calls since the outermost transaction began
std::optional<Key> lastWritten;  // in it

// Remembers why something was not written. That what is to be deleted is missing is no failure.
void Note(long result) {
    if (result != ERROR_FILE_NOT_FOUND && firstFailure.Kept()) firstFailure = ResultOf(result);
}

// Looked at before anything is created: Windows notices only when it has come that far.
bool IsWithinLimits(const std::string& path) {
    if (std::count(path.begin(), path.end(), '\\') >= kMostLevels) return false;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('\\', begin), path.size());
        if (end - begin > kLongestName) return false;
        begin = end + 1;
    }
    return true;
}

// An opened key that closes itself.
class OpenedKey {
  public:
    enum Missing { Fail, Create };

    OpenedKey(const Key& key, REGSAM access, Missing missing = Fail) {
        const auto number = static_cast<std::int32_t>(0x80000000u + key.root);
        const HKEY root = reinterpret_cast<HKEY>(static_cast<std::intptr_t>(number));
        // The calls that take the code page's characters have room for a path of 260 only.
        const std::wstring path = FromAnsi(key.path);
        if (missing == Fail)
            result_ = RegOpenKeyExW(root, path.c_str(), 0, access, &key_);
        else if (IsWithinLimits(key.path))
            result_ = RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access,
                                      nullptr, &key_, nullptr);
        if (missing == Create || access == KEY_WRITE) Note(result_);
    }
    ~OpenedKey() {
        if (key_) RegCloseKey(key_);
    }
    OpenedKey(const OpenedKey&) = delete;
    OpenedKey& operator=(const OpenedKey&) = delete;

    HKEY Handle() const { return key_; }
    bool Opened() const { return result_ == ERROR_SUCCESS; }

  private:
    HKEY key_ = nullptr;
    long result_ = ERROR_INVALID_PARAMETER;
};

// The names that an enumerating call delivers. With too little room for a name or its data it delivers none,
// and the next one all the same; any other failure would come at every index.
template <class Call>
std::vector<std::string> Names(Call call) {
    std::vector<std::string> names;
    for (DWORD index = 0;; ++index) {
        char name[kLongestName + 1] = "";
        DWORD size = sizeof name;
        const long result = call(index, name, &size);
        if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA) return names;
        names.emplace_back(name);
    }
}

}  // namespace

bool KeyExists(const Key& key) { return OpenedKey(key, KEY_QUERY_VALUE).Opened(); }

std::optional<std::vector<std::string>> SubKeys(const Key& key) {
    const OpenedKey opened(key, KEY_ENUMERATE_SUB_KEYS);
    if (!opened.Opened()) return std::nullopt;
    return Names([&](DWORD index, char* name, DWORD* size) {
        return RegEnumKeyExA(opened.Handle(), index, name, size, nullptr, nullptr, nullptr, nullptr);
    });
}

std::vector<std::string> ValueNames(const Key& key) {
    const OpenedKey opened(key, KEY_QUERY_VALUE);
    return Names([&](DWORD index, char* name, DWORD* size) {
        return RegEnumValueA(opened.Handle(), index, name, size, nullptr, nullptr, nullptr, nullptr);
    });
}

std::optional<Value> ReadValue(const Key& key, const std::string& name, std::size_t room) {
    const OpenedKey opened(key, KEY_QUERY_VALUE);
    Value value{0, std::string(room, ' ')};
    DWORD type = 0, size = static_cast<DWORD>(room);
    if (RegQueryValueExA(opened.Handle(), name.c_str(), nullptr, &type,
                         reinterpret_cast<BYTE*>(value.bytes.data()), &size) != ERROR_SUCCESS)
        return std::nullopt;
    value.type = type;
    value.bytes.resize(size);
    return value;
}

void CreateKey(const Key& key) { OpenedKey(key, KEY_QUERY_VALUE, OpenedKey::Create); }

void SetValue(const Key& key, const std::string& name, const Value& value) {
    const OpenedKey opened(key, KEY_SET_VALUE, OpenedKey::Create);
    lastWritten = key;
    // The call looks behind the end of a text, and stores a NUL that it finds there as well.
    const std::string guarded = value.bytes + '.';
    if (opened.Opened())
        Note(RegSetValueExA(opened.Handle(), name.c_str(), 0, value.type,
                            reinterpret_cast<const BYTE*>(guarded.data()),
                            static_cast<DWORD>(value.bytes.size())));
}

void DeleteValue(const Key& key, const std::string& name) {
    const OpenedKey opened(key, KEY_WRITE);
    if (opened.Opened()) Note(RegDeleteValueA(opened.Handle(), name.c_str()));
}

void DeleteKey(const Key& parent, const std::string& subKey) {
    const OpenedKey opened(parent, KEY_WRITE);
    if (opened.Opened()) Note(RegDeleteKeyA(opened.Handle(), subKey.c_str()));
}

// The registry takes what is written at once, call by call; there is nothing to take back. It would come to
// the disk some seconds later.
void BeginTransaction() {
    if (openTransactions++ > 0) return;
    firstFailure = {};
    lastWritten.reset();
}

KeepResult EndTransaction(bool keep) {
    if (--openTransactions > 0 || !keep || !lastWritten) return firstFailure;
    const OpenedKey opened(*lastWritten, KEY_QUERY_VALUE);
    if (opened.Opened()) Note(RegFlushKey(opened.Handle()));
    return firstFailure;
}

const std::size_t kBytesOfCharacter = 1;

std::string ToCodePage(const std::wstring& text) { return ToAnsi(text); }

std::wstring FromCodePage(const std::string& bytes) { return FromAnsi(bytes); }

}  // namespace RegistryCalls
