// Measures whole programs, Kivora beside a bare one, on the display that DISPLAY names and that nobody else
// uses; bench/run starts it:
//   kivora_bench_programs KIVORA BARE SERVER RUNS [KIVORA BARE]
// with the process number of the display server, and those two programs with wxWidgets linked in. Prints a
// line for each figure and run (Figures.h).
#include <sys/types.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <optional>

#include "bench/Figures.h"
#include "bench/Lines.h"
#include "bench/NoteWatch.h"
#include "bench/Process.h"
#include "bench/SampleNotes.h"
#include "bench/Store.h"

namespace {

struct Programs {
    std::string kivora, bare;
    pid_t server;
    // Whose first start has told the desktop of the program. All users here are like that.
    const User* experienced = nullptr;
};

double Milliseconds(NoteWatch::Time from, NoteWatch::Time to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

struct Notes {
    int count;
    Looks looks;
    const char* name;
    int times = 1;  // in each run; what takes little time varies most
};

std::vector<std::string> CommandOf(const Programs& programs, bool kivora, const Notes& notes) {
    if (kivora) return {programs.kivora};
    return {programs.bare, std::to_string(notes.count), std::to_string(static_cast<int>(notes.looks))};
}

// The windows of the program before have gone: what the display server still does for them is not counted.
void Settle(const Programs& programs) {
    NoteWatch().WaitUntilQuiet([&] { return CpuOf(programs.server); });
}

// Minimizes the notes of the program that runs, or brings them back.
std::vector<std::string> ToggleCommand(const Programs& programs, bool kivora, pid_t running) {
    if (kivora) return {programs.kivora, "--toggle"};
    return {programs.bare, "--toggle", std::to_string(running)};
}

struct Start {
    double cpu = 0, server = 0;  // milliseconds, the second that of the display server
    // Milliseconds; until all notes are there, until they are painted too, and until the first one is there.
    double all = 0, painted = 0, first = 0;
    double memory = 0;  // MB
};

// Until all notes are on the screen and nothing more happens. The time of the splash does not count.
Start StartOnce(const Programs& programs, bool kivora, const Notes& notes) {
    Settle(programs);
    const User user(SampleNotes(notes.count, notes.looks), programs.experienced);
    NoteWatch watch;
    const double server = CpuOf(programs.server);
    const auto begin = NoteWatch::Clock::now();
    Process program(CommandOf(programs, kivora, notes));
    watch.WaitForNotes(static_cast<std::size_t>(notes.count));
    const NoteWatch::Time quiet =
        watch.WaitUntilQuiet([&] { return CpuOf(program.Id()) + CpuOf(programs.server); });
    const double splash = Milliseconds(watch.SplashCame(), watch.SplashGone());
    return {CpuOf(program.Id()),
            CpuOf(programs.server) - server,
            Milliseconds(begin, watch.LastChange()) - splash,
            Milliseconds(begin, quiet) - splash,
            Milliseconds(kivora ? watch.SplashGone() : begin, watch.FirstNote()),
            program.Pss()};
}

void MeasureStart(const Programs& programs, bool kivora, const Notes& notes) {
    const Start start = StartOnce(programs, kivora, notes);
    const auto figure = [&](const char* what, const char* unit, double value) {
        Figure(std::string(notes.name) + ": " + what, kivora ? kKivora : kFloor, unit, value);
    };
    figure("CPU until all is quiet", "ms", start.cpu);
    figure("CPU of the display server", "ms", start.server);
    figure("all on the screen, without the splash's time", "ms", start.all);
    figure("all painted and quiet, without the splash's time", "ms", start.painted);
    if (kivora) figure("first one after the splash", "ms", start.first);
    figure("memory (PSS)", "MB", start.memory);
}

// The desktop's theme is read for the first menu.
void MeasureFirstMenu(const Programs& programs) {
    Settle(programs);
    const User user(SampleNotes(1), programs.experienced);
    NoteWatch watch;
    Process program(std::vector<std::string>{programs.kivora});
    watch.WaitForNotes(1);
    const auto cpu = [&] { return CpuOf(program.Id()); };
    watch.WaitUntilQuiet(cpu);
    const double before = cpu();
    OpenAndCloseMenu(watch, cpu);
    Figure("1 note: CPU of the first menu", kKivora, "ms", cpu() - before);
    Figure("1 note: memory (PSS) after the first menu", kKivora, "MB", program.Pss());
}

// Kivora and the floor in turns.
template <typename Measure>
void InTurns(const Measure& measure, const Programs& programs, const Notes& notes) {
    for (int time = 0; time < notes.times; ++time)
        for (const bool kivora : {true, false}) measure(programs, kivora, notes);
}

// Beside the same program with one font, and beside the floor.
void MeasureFonts(const Programs& programs) {
    const double fonts = StartOnce(programs, true, {72, Looks::AllFonts, ""}).cpu;
    const auto beside = [fonts](const char* what, double floor) {
        const std::string figure = std::string("72 notes in 72 fonts") + what + ": CPU until all is quiet";
        Figure(figure, kKivora, "ms", fonts);
        Figure(figure, kFloor, "ms", floor);
    };
    beside(", beside one font", StartOnce(programs, true, {72, Looks::Plain, ""}).cpu);
    beside("", StartOnce(programs, false, {72, Looks::AllFonts, ""}).cpu);
}

void MeasureMinimizing(const Programs& programs, bool kivora, const Notes& notes) {
    Settle(programs);
    const User user(SampleNotes(notes.count, notes.looks), programs.experienced);
    NoteWatch screen;
    Process program(CommandOf(programs, kivora, notes));
    for (const bool shown : {true, false, true}) {
        const bool first = shown && screen.FirstNote() == NoteWatch::Time();
        const auto begin = NoteWatch::Clock::now();
        std::optional<Process> command;
        if (!first) command.emplace(ToggleCommand(programs, kivora, program.Id()));
        screen.WaitForNotes(shown ? static_cast<std::size_t>(notes.count) : 0);
        if (!first)
            Figure(std::string(notes.name) + (shown ? ": brought back" : ": minimized"),
                   kivora ? kKivora : kFloor, "ms", Milliseconds(begin, screen.LastChange()));
        screen.WaitUntilQuiet([&] { return CpuOf(program.Id()) + CpuOf(programs.server); });
    }
}

void MeasureAll(const Programs& programs) {
    constexpr Notes kStarts[] = {
        {1, Looks::Plain, "1 note", 2},
        {10, Looks::Plain, "10 notes"},
        {100, Looks::Plain, "100 notes", 2},
        {1000, Looks::Plain, "1,000 notes"},
        {100, Looks::TwelveFonts, "100 notes in 12 fonts"},
        {100, Looks::Crowded, "100 crowded notes of all looks"},
    };
    constexpr Notes kMinimized[] = {{100, Looks::Plain, "100 notes"}, {500, Looks::Plain, "500 notes"}};
    for (const Notes& notes : kStarts) InTurns(MeasureStart, programs, notes);
    for (const Notes& notes : kMinimized) InTurns(MeasureMinimizing, programs, notes);
    MeasureFirstMenu(programs);
    MeasureFonts(programs);
    MeasureLines(programs.kivora);
}

void MeasureLinkedIn(const Programs& programs) {
    constexpr Notes kStarts[] = {{1, Looks::Plain, "1 note, wxWidgets linked in", 2},
                                 {100, Looks::Plain, "100 notes, wxWidgets linked in"}};
    for (const Notes& notes : kStarts) InTurns(MeasureStart, programs, notes);
}

// The first start of a user.
void Introduce(const std::string& kivora) {
    NoteWatch watch;
    const Process program(std::vector<std::string>{kivora});
    watch.WaitUntilQuiet([&] { return CpuOf(program.Id()); });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5 && argc != 7) {
        std::fputs("kivora_bench_programs KIVORA BARE SERVER RUNS [KIVORA BARE]\n", stderr);
        return 2;
    }
    try {
        const User experienced({});
        Introduce(argv[1]);
        const pid_t server = std::atoi(argv[3]);
        for (int run = 0; run < std::atoi(argv[4]); ++run) {
            MeasureAll({argv[1], argv[2], server, &experienced});
            if (argc == 7) MeasureLinkedIn({argv[5], argv[6], server, &experienced});
        }
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kivora_bench_programs: %s\n", failure.what());
        return 1;
    }
    return 0;
}
