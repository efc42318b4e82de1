#pragma once
// The program's only door to the registry. A place is named by one text: a root abbreviation, the key and
// possibly a value name, separated by backslashes. Every call opens and closes its own key; nothing is kept
// between calls and no failure is reported beyond the results named here.

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "registry/KeepResult.h"

enum : std::int32_t { REG_TYPE_SZ = 1, REG_TYPE_EXPAND_SZ = 2, REG_TYPE_DWORD = 4, REG_TYPE_MULTI_SZ = 7 };

// Nothing (unknown root), a number or a text.
using RegistryValue = std::variant<std::monostate, std::int32_t, std::wstring>;

// The text or number of a value, empty or 0 when it holds the other kind or nothing.
std::wstring AsText(const RegistryValue& value);
std::int32_t AsNumber(const RegistryValue& value);

class clsRegistry {
  public:
    // The names of a key's values. False for an unknown root. Without values the array has one empty element.
    bool EnumValues(const std::wstring& key, std::vector<std::wstring>& ValArray);

    // The names of a key's subkeys and their number; -1 for a missing key or an unknown root. Without subkeys
    // the array has one empty element, so 0 and -1 differ only in the result.
    std::int32_t EnumKeys(const std::wstring& key, std::vector<std::wstring>& KeyArray);

    bool KeyExists(const std::wstring& key);

    // Deletes a key with everything below it, deepest first. With a trailing backslash the children go first
    // and then the key itself is asked to go. True means only that the root was known.
    bool DeleteKey(const std::wstring& key);

    bool DeleteValue(const std::wstring& PathWithValue);

    // A text for the types 1, 2 and 7, else a 32-bit number; empty or 0 when the value is missing. Texts of
    // 4096 bytes or more in the registry's code page come back empty.
    RegistryValue GetValue(const std::wstring& PathWithValue, std::int32_t RegType);

    // Writes a text without a terminating NUL, or a number rounded to 32 bits. Missing keys are created.
    bool SetValue(const std::wstring& PathWithValue, std::int32_t RegType, const std::wstring& Value);
    bool SetValue(const std::wstring& PathWithValue, std::int32_t RegType, double Value);

    bool CreateKey(const std::wstring& key);
};

// The instance that the whole program uses, created at first use.
clsRegistry& Registry();

// What GetValue gives back of a text that SetValue has written: nothing of one that is too long, and what the
// registry's code page makes of the others.
std::wstring AsReadBack(const std::wstring& text);

// A text of any length, also one that GetValue does not give back. Empty when there is none.
std::wstring WholeText(const std::wstring& PathWithValue);

// Everything written while such an object lives becomes durable at once when the outermost one is committed,
// or not at all: after a crash, an exception or with a full disk the image is the old one or the new one.
// Other processes wait meanwhile. They nest; when an inner one ends without Commit, nothing of the outermost
// one is kept. Where the platform's registry knows no transactions, the writes are done one by one, and
// Commit says whether one of them failed.
class RegistryTransaction {
  public:
    RegistryTransaction();
    ~RegistryTransaction();  // without Commit: what was written is taken back
    RegistryTransaction(const RegistryTransaction&) = delete;
    RegistryTransaction& operator=(const RegistryTransaction&) = delete;

    // Once. An inner transaction says only why it could not write; whether it is kept, the outermost one
    // says.
    KeepResult Commit();

  private:
    bool committed_ = false;
};
