// Calls of the registry with any paths, names and values; nothing of it is kept.
#include "base/Text.h"
#include "fuzz/support/FuzzTarget.h"
#include "registry/clsRegistry.h"

namespace {

constexpr std::size_t kLongestRead = 4095;

// Only names between single backslashes behind a root, none of which is too long: whatever may be promised
// about a path can be promised about these.
bool IsPlain(const std::wstring& path) {
    if (!path.starts_with(L"HKLM\\") && !path.starts_with(L"HKCU\\")) return false;
    const std::string names = ToUtf8(path);
    return names.size() <= 255 && names.find('\0') == names.npos && path.find(L"\\\\") == path.npos &&
           !path.ends_with(L'\\');
}

void Set(clsRegistry& registry, const std::wstring& path, FuzzInput& input) {
    const std::wstring text = input.Text();
    const bool known = registry.SetValue(path, REG_TYPE_SZ, text);
    Require(known || !IsPlain(path), "a plain path is known");
    const RegistryValue read = registry.GetValue(path, REG_TYPE_SZ);
    Require(std::holds_alternative<std::wstring>(read) == known, "what has a root has a text");
    const std::wstring expected = text.substr(0, text.find(L'\0'));
    const bool fits = expected.size() <= kLongestRead && ToUtf8(expected).size() <= kLongestRead;
    if (IsPlain(path) && fits) Require(AsText(read) == expected, "a value reads back");
    if (IsPlain(path)) Require(WholeText(path) == expected, "a text of any length reads back as a whole");

    const double number = static_cast<double>(static_cast<std::int32_t>(text.size() * 2654435761U));
    registry.SetValue(path, REG_TYPE_DWORD, number);
    if (IsPlain(path))
        Require(AsNumber(registry.GetValue(path, REG_TYPE_DWORD)) == number, "a number reads back");
}

void List(clsRegistry& registry, const std::wstring& path) {
    std::vector<std::wstring> keys, values;
    const std::int32_t count = registry.EnumKeys(path, keys);
    Require(count >= -1 && keys.size() == static_cast<std::size_t>(std::max(count, 1)), "keys are counted");
    registry.EnumValues(path, values);
    Require(!values.empty() || !IsPlain(path), "without values there is an empty name");
    if (!IsPlain(path)) return;
    Require(registry.KeyExists(path) == (count >= 0), "keys of what exists can be listed");
    for (std::int32_t i = 0; i < count; ++i)
        Require(registry.KeyExists(path + L'\\' + keys[static_cast<std::size_t>(i)]),
                "what is listed exists");
}

void Call(FuzzInput& input) {
    const RegistryTransaction notKept;
    clsRegistry& registry = Registry();
    while (!input.Empty()) {
        const std::uint8_t call = input.Byte();
        const std::wstring path = input.Text();
        switch (call % 5) {
            case 0:
                registry.CreateKey(path);
                if (IsPlain(path)) Require(registry.KeyExists(path), "a key that was made exists");
                break;
            case 1:
                registry.DeleteKey(path);
                if (IsPlain(path)) Require(!registry.KeyExists(path), "a deleted key is gone");
                break;
            case 2:
                registry.DeleteValue(path);
                if (IsPlain(path))
                    Require(AsText(registry.GetValue(path, REG_TYPE_SZ)).empty(), "a deleted value is gone");
                break;
            case 3:
                Set(registry, path, input);
                break;
            default:
                List(registry, path);
        }
    }
}

const FuzzTarget kTarget("clsRegistry", Call);

}  // namespace
