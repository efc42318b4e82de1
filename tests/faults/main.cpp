// Runs the program's work with what it keeps again and again, each time with another fault, and tells which
// promise was broken by which:
//   kivora_faults some       60 runs, also without a word, spread over all there are
//   kivora_faults long       1200 kills, 1200 failing calls and 600 power cuts
//   kivora_faults all        every one
//   kivora_faults "used kill-inside 123 -"    one run; failing ones are printed like this
//
// A number after "some" or "long" is the seed by which the runs are chosen.
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "tests/faults/Rows.h"

namespace {

struct Figures {
    int runs = 0, failed = 0, refusing = 0, refusedButThere = 0;
    std::size_t all = 1;  // to choose from
    long saved = 0, refused = 0;
};

void RunOne(const Row& row, Figures& figures) {
    const Outcome outcome = Run(row);
    ++figures.runs;
    figures.saved += outcome.saved;
    figures.refused += outcome.refused;
    if (outcome.refused > 0) ++figures.refusing;
    if (outcome.refusedButThere) ++figures.refusedButThere;
    if (outcome.wrong.empty()) return;
    ++figures.failed;
    std::printf("%s\n", ToText(row).c_str());
    for (const std::string& wrong : outcome.wrong) std::printf("    %s\n", wrong.c_str());
    std::fflush(stdout);
}

// So many of all, evenly spread.
Figures RunSome(Sort sort, std::size_t count, std::mt19937& random) {
    const std::vector<Row> rows = RowsOf(sort);
    Figures figures;
    figures.all = rows.size();
    constexpr std::size_t kFewest = 500;
    if (rows.size() < kFewest) {
        std::printf("only %zu runs to choose from: the calls are not seen\n", rows.size());
        figures.failed = 1;
    }
    if (count > rows.size()) count = rows.size();
    const double step = static_cast<double>(rows.size()) / static_cast<double>(count);
    const double first = step * (random() / 4294967296.0);
    for (std::size_t i = 0; i < count; ++i)
        RunOne(rows[static_cast<std::size_t>(first + step * static_cast<double>(i))], figures);
    return figures;
}

int Print(const char* what, const Figures& figures) {
    std::printf(
        "%5d %-13s of %5zu: %6ld saves kept, %5ld refused in %d runs, in %d of them there all the same; "
        "%d runs wrong\n",
        figures.runs, what, figures.all, figures.saved, figures.refused, figures.refusing,
        figures.refusedButThere, figures.failed);
    return figures.failed;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "some";
    if (what.find(' ') != std::string::npos) {
        Row row;
        if (!ToRow(what, row)) return 2;
        Figures figures;
        RunOne(row, figures);
        return Print("run", figures) > 0;
    }
    std::mt19937 random(argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : 1);
    constexpr std::size_t kAll = static_cast<std::size_t>(-1);
    const bool all = what == "all", some = what == "some";
    int failed = 0;
    failed += Print("kills", RunSome(Sort::Kills, all ? kAll : some ? 25 : 1200, random));
    failed += Print("failing calls", RunSome(Sort::Failures, all ? kAll : some ? 25 : 1200, random));
    failed += Print("power cuts", RunSome(Sort::Cuts, all ? kAll : some ? 10 : 600, random));
    return failed > 0;
}
