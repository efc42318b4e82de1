#pragma once
// What the program finds at its start, and what is done with it until its end.

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/faults/FileCalls.h"
#include "tests/faults/Program.h"

// "first": nothing is there; "used": it was ended as usual; "crashed": it was killed before; "long": the
// same, and so much is saved now that SQLite brings its log into the file and begins it anew; "damaged": it
// was ended as usual, then a byte of a note changed.
const std::vector<std::string>& Scenarios();
inline const std::string kDamaged = "damaged";

// Makes the folder as a program finds it then; what is kept in it.
Image Prepare(const std::string& scenario, const std::filesystem::path& data);

std::vector<std::function<void(Program&)>> Steps(const std::string& scenario,
                                                 const std::filesystem::path& data);

// The calls of the whole work when nothing fails.
std::vector<LoggedCall> CallsOf(const std::string& scenario);
