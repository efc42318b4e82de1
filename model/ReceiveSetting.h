#pragma once
// From whom this computer takes notes over the network: a setting that lies beside what is kept of the notes.

#include <optional>
#include <string_view>

#include "registry/KeepResult.h"

enum class ReceiveFrom {
    All,    // any computer
    Known,  // computers of the address book
    None,   // nobody; the port is not listened on
};

// As it is written in commands and in the registry: "all", "known", "none".
const wchar_t* WordOf(ReceiveFrom from);
std::optional<ReceiveFrom> ReceiveFromOf(std::wstring_view word);

// What applies: everybody where nothing is set, nobody where it is an unknown word or where the registry
// cannot be read for now.
ReceiveFrom ReadReceiveFrom();

// Returns when it is on the disk, or why it is not; then what was set before still applies.
KeepResult WriteReceiveFrom(ReceiveFrom from);
