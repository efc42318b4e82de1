#pragma once
// A key of the registry whose content is replaced as a whole: after a crash, a kill or a power cut at any
// moment it holds the old content or the new one.
//
// Where the registry knows no transactions that is the work of a journal: a file of the user's that holds the
// new content while it is being written value by value. A mark beside the key, a value with the key's name in
// the key above, is there as long as the content is not whole, and names the one journal that can complete
// it. So a journal is never taken for newer than it is, whoever has written the key since.

#include <string>

#include "registry/KeepResult.h"
#include "registry/KeyContent.h"

// Puts this content in the place of all that the key (with its last backslash) holds, and says whether it is
// on the disk. When it is not kept, the key holds what it held; where only the registry itself refused to go
// on, it holds a part of both until the next call succeeds or the program starts again. A subkey is to be
// spelled the same in all paths.
KeepResult ReplaceKey(const std::wstring& key, const KeyContent& content);

// The writing itself, value by value: a part of it may be done when the program ends meanwhile.
void WriteKey(const std::wstring& key, const KeyContent& content);
// The same beside what the key holds.
void WriteValues(const std::wstring& key, const KeyContent& content);

// Completes what ReplaceKey could not, because the program or the machine came to its end. To be called
// before the key is read. When that fails, the key is not whole, and ReplaceKey refuses to write over it.
KeepResult CompleteKey(const std::wstring& key);
