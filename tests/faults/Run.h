#pragma once
// Runs of the program with one fault in each, told by lines like "failures 40".

#include <optional>
#include <string>
#include <vector>

#include "tests/faults/FileCalls.h"

// With what the program starts. "first": nothing is there; "used": it was ended as usual; "crashed": it was
// killed before; "long": the same, and so much is saved now that SQLite brings its log into the file and
// begins it anew; "damaged": it was ended as usual, then a byte of a note changed.
inline const std::string kDamaged = "damaged";
inline const std::string kScenarios[] = {"first", "used", "crashed", "long", kDamaged};

struct Row {
    std::string scenario;
    Fault fault;
    std::optional<std::uint32_t> cut = {};  // the power goes when the process is killed; as Disk's seed
};

// What went wrong; empty: every promise was kept.
std::vector<std::string> Run(const Row& row);

// The calls of the whole work when nothing fails.
std::vector<FileCall> CallsOf(const std::string& scenario);
