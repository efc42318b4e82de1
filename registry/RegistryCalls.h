#pragma once
// What clsRegistry asks of the registry, the same on every platform. On Windows each call opens the key with
// the right that it needs, makes one registry call and closes the key; elsewhere a hive in the user's data
// folder answers.
//
// Names and texts are bytes in the registry's code page (the ANSI code page on Windows, UTF-8 elsewhere) and
// end at their first NUL. Names compare and enumerate without regard to case. A trailing backslash of a key
// path is accepted. A key name has at most 255 bytes, and keys nest at most 512 deep.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "registry/KeepResult.h"

namespace RegistryCalls {

struct Key {
    std::uint32_t root = 0;  // the number of a predefined root, 0 to 6
    std::string path;
};

struct Value {
    std::uint32_t type = 0;
    std::string bytes;
};

bool KeyExists(const Key& key);

// Nothing for a missing key. A name of more than 255 bytes is empty.
std::optional<std::vector<std::string>> SubKeys(const Key& key);

// Empty for a missing key. A name of more than 255 bytes is empty.
std::vector<std::string> ValueNames(const Key& key);

// Nothing when it is missing or has more bytes than there is room for.
std::optional<Value> ReadValue(const Key& key, const std::string& name, std::size_t room);

// What follows writes. What fails is known to the transaction around it alone; that what is to be deleted is
// missing is no failure. Missing keys are made, all or none.
void CreateKey(const Key& key);
void SetValue(const Key& key, const std::string& name, const Value& value);
void DeleteValue(const Key& key, const std::string& name);

// Refused while the key has subkeys, and for a root. An empty name means the parent itself.
void DeleteKey(const Key& parent, const std::string& subKey);

// Begin and end of a RegistryTransaction; they nest. When one of them ends without being kept, nothing of the
// outermost one is. The result says why something written in it is not kept.
void BeginTransaction();
KeepResult EndTransaction(bool keep);

// What a character takes there at most, as far as readers make room for it.
extern const std::size_t kBytesOfCharacter;

std::string ToCodePage(const std::wstring& text);
std::wstring FromCodePage(const std::string& bytes);

}  // namespace RegistryCalls
