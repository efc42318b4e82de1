#pragma once
// Runs of the program with one fault in each, told by lines like "failures 40".

#include <optional>
#include <string>
#include <vector>

#include "tests/faults/Disk.h"
#include "tests/faults/FileCalls.h"

// With what the program starts. "first": nothing is there; "used": it was ended as usual; "crashed": it was
// killed before; "long": the same, and so much is saved now that SQLite brings its log into the file and
// begins it anew; "damaged": it was ended as usual, then a byte of a note changed.
inline const std::string kDamaged = "damaged";
inline const std::string kScenarios[] = {"first", "used", "crashed", "long", kDamaged};

struct Row {
    struct Cut {
        Disk::Rest rest = Disk::Rest::Lost;
        std::uint32_t seed = 0;
    };
    std::string scenario;
    Fault fault;
    std::optional<Cut> cut = {};  // the power goes when the process is killed
};

struct Outcome {
    std::vector<std::string> wrong;  // empty: every promise was kept
    int saved = 0, refused = 0;      // saves of which the program said that they were kept, and were not
};
Outcome Run(const Row& row);

// The calls of the whole work when nothing fails.
struct SeenCall {
    CallKind kind;
    bool changes;  // can leave something else on the disk than was there before
};
std::vector<SeenCall> CallsOf(const std::string& scenario);

// All rows of one sort, as many as there are calls to choose from in all scenarios.
enum Sort { kKills, kFailures, kCuts };
std::vector<Row> RowsOf(Sort sort);
