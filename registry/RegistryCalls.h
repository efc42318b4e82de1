#pragma once
// The nine calls that clsRegistry stands on, the same on every platform down to their result codes. On
// Windows they are the system's; elsewhere a hive in the user's data folder answers them.
//
// Names and texts are bytes in the registry's code page (the system's ANSI code page on Windows, UTF-8
// elsewhere). Names compare and enumerate without regard to case. A trailing backslash of a key path is
// accepted. Sizes are bytes.

#include <cstddef>
#include <cstdint>
#include <string>

#include "registry/KeepResult.h"

namespace RegistryCalls {

using Key = std::uintptr_t;  // an open key, or one of the roots; 0 is no key

// The handle of a predefined root, 0 to 6. They need no opening, and closing them does nothing.
constexpr Key RootKey(std::uint32_t number) {
    return static_cast<Key>(static_cast<std::intptr_t>(static_cast<std::int32_t>(0x80000000u + number)));
}

enum Result : long {
    kSuccess = 0,
    kFileNotFound = 2,       // no such key or value
    kAccessDenied = 5,       // deleting a key that has subkeys
    kInvalidHandle = 6,      // no open key
    kInvalidParameter = 87,  // a key name of more than 255 bytes, or keys nested more than 512 deep
    kMoreData = 234,         // the buffer is too small and untouched; the size says what is needed
    kNoMoreItems = 259,      // the index is behind the last item
    kBadKey = 1010,
    kKeyDeleted = 1018,  // the key was deleted after it had been opened
    kIoFailed = 1117,    // the store could not be read or written
};

enum Access : std::uint32_t { kQueryValue = 1, kSetValue = 2, kEnumerateSubKeys = 8, kWrite = 0x20006 };

long OpenKey(Key parent, const std::string& subKey, std::uint32_t access, Key& result);

// Opens the key, creating it and every missing key above it first.
long CreateKey(Key parent, const std::string& subKey, std::uint32_t access, Key& result);

// size: in, the buffer's; out, the data's. A text that was stored without a terminating NUL gets one when the
// buffer has room for it.
long QueryValue(Key key, const std::string& name, std::uint32_t& type, void* data, std::uint32_t& size);

long SetValue(Key key, const std::string& name, std::uint32_t type, const void* data, std::uint32_t size);

// nameSize: in, the buffer's with room for the NUL; out, the name's without it. A value whose data does not
// fit gives kMoreData with its name all the same.
long EnumKey(Key key, std::uint32_t index, char* name, std::uint32_t& nameSize);
long EnumValue(Key key, std::uint32_t index, char* name, std::uint32_t& nameSize, std::uint32_t& type,
               void* data, std::uint32_t& dataSize);

// Deletes a key and its values. Refused with kAccessDenied while it has subkeys. An empty name means the
// parent itself.
long DeleteKey(Key parent, const std::string& subKey);

long DeleteValue(Key key, const std::string& name);

long CloseKey(Key key);

// Begin and end of a RegistryTransaction; they nest. When one of them ends without being kept, nothing of the
// outermost one is. The result says why something written in it is not kept.
void BeginTransaction();
KeepResult EndTransaction(bool keep);

// What a character takes there at most, as far as readers make room for it.
extern const std::size_t kBytesOfCharacter;

std::string ToCodePage(const std::wstring& text);
std::wstring FromCodePage(const std::string& bytes);

}  // namespace RegistryCalls
