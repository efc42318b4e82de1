// Runs the program's work with what it keeps again and again, each time with another fault, and tells which
// promise was broken by which:
//   kivora_faults some            60 runs, also without a word, spread over all there are
//   kivora_faults long            1200 kills, 1200 failing calls and 600 power cuts
//   kivora_faults all             every one
//   kivora_faults failures 123    one run; those that go wrong are printed like this
//
// A number after "some" or "long" is the seed by which the runs are chosen.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "tests/faults/Run.h"

namespace {

constexpr struct {
    const char* name;
    std::size_t some, many;
} kSorts[] = {{"kills", 25, 1200}, {"failures", 25, 1200}, {"cuts", 10, 600}};

struct Figures {
    int runs = 0, failed = 0, refusing = 0;
    long saved = 0, refused = 0;
};

void RunOne(Sort sort, const std::vector<Row>& rows, std::size_t number, Figures& figures) {
    const Row& row = rows.at(number);
    const Outcome outcome = Run(row);
    ++figures.runs;
    figures.saved += outcome.saved;
    figures.refused += outcome.refused;
    figures.refusing += outcome.refused > 0;
    if (outcome.wrong.empty()) return;
    ++figures.failed;
    std::printf("%s %zu (%s, call %lld, %s)\n", kSorts[sort].name, number, row.scenario.c_str(),
                static_cast<long long>(row.fault.at), std::strerror(row.fault.error));
    for (const std::string& wrong : outcome.wrong) std::printf("    %s\n", wrong.c_str());
    std::fflush(stdout);
}

// So many of all, evenly spread. How many went wrong.
int RunSome(Sort sort, std::size_t count, std::mt19937& random) {
    const std::vector<Row> rows = RowsOf(sort);
    Figures figures;
    constexpr std::size_t kFewest = 500;
    if (rows.size() < kFewest) {
        std::printf("only %zu runs to choose from: the calls are not seen\n", rows.size());
        figures.failed = 1;
    }
    count = std::min(count, rows.size());
    const double step = static_cast<double>(rows.size()) / static_cast<double>(count);
    const double first = step * (random() / 4294967296.0);
    for (std::size_t i = 0; i < count; ++i)
        RunOne(sort, rows, static_cast<std::size_t>(first + step * static_cast<double>(i)), figures);
    std::printf("%5d %-8s of %5zu: %6ld saves kept, %5ld refused in %d runs; %d runs wrong\n", figures.runs,
                kSorts[sort].name, rows.size(), figures.saved, figures.refused, figures.refusing,
                figures.failed);
    return figures.failed;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "some";
    const unsigned number = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1;
    std::mt19937 random(number);
    int failed = 0;
    for (const Sort sort : {kKills, kFailures, kCuts}) {
        if (what != kSorts[sort].name) continue;
        Figures figures;
        RunOne(sort, RowsOf(sort), number, figures);
        return figures.failed;
    }
    for (const Sort sort : {kKills, kFailures, kCuts}) {
        const bool all = what == "all";
        failed += RunSome(sort,
                          all              ? static_cast<std::size_t>(-1)
                          : what == "some" ? kSorts[sort].some
                                           : kSorts[sort].many,
                          random);
    }
    return failed > 0;
}
