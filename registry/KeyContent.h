#pragma once
// All that a key of the registry holds, below it too.

#include <string>
#include <utility>
#include <vector>

#include "registry/clsRegistry.h"

// Texts and numbers with their paths below the key, like "Note0\Text", in the order of writing.
using KeyContent = std::vector<std::pair<std::wstring, RegistryValue>>;
