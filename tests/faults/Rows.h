#pragma once
// One run of the program with one fault in it, named by a line: "used kill-inside 123", "first fail 40
// ENOSPC", "crashed cut 77 partly 5".

#include <cstdint>
#include <string>
#include <vector>

#include "tests/faults/Disk.h"
#include "tests/faults/FileCalls.h"

struct Row {
    std::string scenario;  // with what the program starts
    Fault fault;
    bool cutsPower = false;
    Disk::Rest rest = Disk::Rest::Lost;
    std::uint32_t seed = 0;
};

std::string ToText(const Row& row);
bool ToRow(const std::string& text, Row& row);

struct Outcome {
    std::vector<std::string> wrong;  // empty: every promise was kept
    int saved = 0, refused = 0;      // saves of which the program said that they were kept, and were not
    bool refusedButThere = false;    // a refused save was there after the next start all the same
};
Outcome Run(const Row& row);

// All rows of one sort, as many as there are calls to choose from in all scenarios.
enum class Sort { Kills, Failures, Cuts };
std::vector<Row> RowsOf(Sort sort);
