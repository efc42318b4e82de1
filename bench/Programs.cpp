// Measures whole programs, Kivora beside a bare one, on the display that DISPLAY names and that nobody else
// uses; bench/run starts it:
//   kivora_bench_programs KIVORA BARE SERVER RUNS
// with the process number of the display server. Prints a line for each figure and run (Figures.h).
#include <sys/types.h>

#include <csignal>
#include <cstdlib>
#include <exception>

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
    int runs;
};

double Milliseconds(NoteWatch::Time from, NoteWatch::Time to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

struct Notes {
    int count;
    Looks looks;
    const char* name;
};

std::vector<std::string> CommandOf(const Programs& programs, bool kivora, const Notes& notes) {
    if (kivora) return {programs.kivora};
    return {programs.bare, std::to_string(notes.count), std::to_string(static_cast<int>(notes.looks))};
}

struct Start {
    double cpu = 0, server = 0;  // milliseconds, the second that of the display server
    double all = 0, first = 0;   // milliseconds; until all notes are there, and until the first one is
    double memory = 0;           // MB
};

// Until all notes are on the screen and nothing more happens. The time of the splash does not count.
Start StartOnce(const Programs& programs, bool kivora, const Notes& notes) {
    const User user(SampleNotes(notes.count, notes.looks));
    NoteWatch watch;
    const double server = CpuOf(programs.server);
    const auto begin = NoteWatch::Clock::now();
    Process program(CommandOf(programs, kivora, notes));
    watch.WaitForNotes(static_cast<std::size_t>(notes.count));
    watch.WaitUntilQuiet([&] { return CpuOf(program.Id()) + CpuOf(programs.server); });
    return {CpuOf(program.Id()), CpuOf(programs.server) - server,
            Milliseconds(begin, watch.LastChange()) - Milliseconds(watch.SplashCame(), watch.SplashGone()),
            Milliseconds(kivora ? watch.SplashGone() : begin, watch.FirstNote()), program.Pss()};
}

void MeasureStart(const Programs& programs, bool kivora, const Notes& notes) {
    const Start start = StartOnce(programs, kivora, notes);
    const auto figure = [&](const char* what, const char* unit, double value) {
        Figure(std::string(notes.name) + ": " + what, kivora ? kKivora : kFloor, unit, value);
    };
    figure("CPU until all is quiet", "ms", start.cpu);
    figure("CPU of the display server", "ms", start.server);
    figure("all on the screen, without the splash's time", "ms", start.all);
    if (kivora) figure("first one after the splash", "ms", start.first);
    figure("memory (PSS)", "MB", start.memory);
}

// Its floor is the same program with one font.
void MeasureFonts(const Programs& programs) {
    for (const Looks looks : {Looks::AllFonts, Looks::Plain})
        Figure("72 notes in 72 fonts, beside one font: CPU until all is quiet",
               looks == Looks::Plain ? kFloor : kKivora, "ms",
               StartOnce(programs, true, {72, looks, ""}).cpu);
}

void MeasureMinimizing(const Programs& programs, bool kivora, const Notes& notes) {
    const User user(SampleNotes(notes.count, notes.looks));
    NoteWatch screen;
    Process program(CommandOf(programs, kivora, notes));
    for (const bool shown : {true, false, true}) {
        const auto begin = NoteWatch::Clock::now();
        const bool first = shown && screen.FirstNote() == NoteWatch::Time();
        if (!first && kivora && Process({programs.kivora, "--toggle"}).Wait() != 0)
            throw std::runtime_error("--toggle fails");
        if (!first && !kivora) kill(program.Id(), shown ? SIGUSR2 : SIGUSR1);
        screen.WaitForNotes(shown ? static_cast<std::size_t>(notes.count) : 0);
        if (!first)
            Figure(std::string(notes.name) + (shown ? ": brought back" : ": minimized"),
                   kivora ? kKivora : kFloor, "ms", Milliseconds(begin, screen.LastChange()));
        screen.WaitUntilQuiet([&] { return CpuOf(program.Id()) + CpuOf(programs.server); });
    }
}

void MeasureAll(const Programs& programs) {
    constexpr Notes kStarts[] = {
        {1, Looks::Plain, "1 note"},
        {10, Looks::Plain, "10 notes"},
        {100, Looks::Plain, "100 notes"},
        {1000, Looks::Plain, "1,000 notes"},
        {100, Looks::TwelveFonts, "100 notes in 12 fonts"},
        {100, Looks::Crowded, "100 crowded notes of all looks"},
    };
    constexpr Notes kMinimized[] = {{100, Looks::Plain, "100 notes"}, {500, Looks::Plain, "500 notes"}};
    for (int run = 0; run < programs.runs; ++run) {
        for (const bool kivora : {true, false}) {
            for (const Notes& notes : kStarts) MeasureStart(programs, kivora, notes);
            for (const Notes& notes : kMinimized) MeasureMinimizing(programs, kivora, notes);
        }
        MeasureFonts(programs);
        MeasureLines(programs.kivora);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("kivora_bench_programs KIVORA BARE SERVER RUNS\n", stderr);
        return 2;
    }
    try {
        MeasureAll({argv[1], argv[2], std::atoi(argv[3]), std::atoi(argv[4])});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kivora_bench_programs: %s\n", failure.what());
        return 1;
    }
    return 0;
}
