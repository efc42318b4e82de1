// Runs the program's work with what it keeps again and again, each time with another fault, and tells which
// promise was broken by which:
//   kivora_faults some            60 runs, also without a word, spread over all there are
//   kivora_faults long            1200 kills, 1200 failing calls and 600 power cuts
//   kivora_faults all             every one
//   kivora_faults failures 123    one run; those that go wrong are printed like this
//
// A number after "some" or "long" is the seed by which the runs are chosen.
#include <fcntl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>

#include "tests/faults/Run.h"

namespace {

enum Sort { kKills, kFailures, kCuts };
constexpr struct {
    const char* name;
    std::size_t some, many;
} kSorts[] = {{"kills", 25, 1200}, {"failures", 25, 1200}, {"cuts", 10, 600}};

void AddRows(Sort sort, const std::string& scenario, std::int64_t at, const FileCall& call,
             std::vector<Row>& rows) {
    // It can leave something else on the disk than was there before.
    const bool changes = call.kind == CallKind::Open
                             ? (call.flags & O_CREAT) != 0
                             : call.kind >= CallKind::Write && call.kind <= CallKind::MakeFolder;
    if (sort == kFailures) {
        for (const int error : ErrorsOf(call.kind))
            for (const Fault::Kind kind : {Fault::FailOnce, Fault::FailForGood})
                rows.push_back({scenario, {kind, at, error}});
    } else if (changes && sort == kKills) {
        rows.push_back({scenario, {Fault::KillBefore, at}});
        if (call.kind == CallKind::Write) rows.push_back({scenario, {Fault::KillInside, at}});
    } else if (changes) {
        for (const std::uint32_t seed : {0, 1, 2}) rows.push_back({scenario, {Fault::KillBefore, at}, seed});
    }
}

// All rows of one sort, as many as there are calls to choose from in all scenarios.
std::vector<Row> RowsOf(Sort sort) {
    static std::map<std::string, std::vector<FileCall>> calls;
    std::vector<Row> rows;
    for (const std::string& scenario : kScenarios) {
        std::vector<FileCall>& its = calls[scenario];
        if (its.empty()) its = CallsOf(scenario);
        for (std::size_t i = 0; i < its.size(); ++i)
            AddRows(sort, scenario, static_cast<std::int64_t>(i) + 1, its[i], rows);
    }
    return rows;
}

// How many went wrong.
int RunOne(Sort sort, const std::vector<Row>& rows, std::size_t number) {
    const Row& row = rows.at(number);
    const std::vector<std::string> all = Run(row);
    if (all.empty()) return 0;
    std::printf("%s %zu (%s, call %lld, %s)\n", kSorts[sort].name, number, row.scenario.c_str(),
                static_cast<long long>(row.fault.at), std::strerror(row.fault.error));
    for (const std::string& wrong : all) std::printf("    %s\n", wrong.c_str());
    std::fflush(stdout);
    return 1;
}

// So many of all, evenly spread.
int RunSome(Sort sort, std::size_t count, std::mt19937& random) {
    const std::vector<Row> rows = RowsOf(sort);
    constexpr std::size_t kFewest = 500;
    int failed = rows.size() < kFewest;  // the calls are not seen
    count = std::min(count, rows.size());
    const double step = static_cast<double>(rows.size()) / static_cast<double>(count);
    const double first = step * (random() / 4294967296.0);
    for (std::size_t i = 0; i < count; ++i)
        failed += RunOne(sort, rows, static_cast<std::size_t>(first + step * static_cast<double>(i)));
    std::printf("%5zu %-8s of %5zu: %d runs wrong\n", count, kSorts[sort].name, rows.size(), failed);
    return failed;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "some";
    const unsigned number = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1;
    std::mt19937 random(number);
    int failed = 0;
    for (const Sort sort : {kKills, kFailures, kCuts}) {
        if (what == kSorts[sort].name) return RunOne(sort, RowsOf(sort), number);
    }
    for (const Sort sort : {kKills, kFailures, kCuts}) {
        const auto& [name, some, many] = kSorts[sort];
        failed += RunSome(sort, what == "all" ? SIZE_MAX : what == "some" ? some : many, random);
    }
    return failed > 0;
}
