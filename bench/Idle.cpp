// Counts how often the idle program is woken, on the display that DISPLAY names and that nobody else uses:
//   kivora_bench_idle KIVORA NOTES SECONDS [minimized | menu]
// with so many notes, all minimized, or after the menu of one has been opened and closed again.
#include <chrono>
#include <cstdlib>
#include <string_view>
#include <thread>

#include "bench/NoteWatch.h"
#include "bench/Process.h"
#include "bench/SampleNotes.h"
#include "bench/Store.h"

namespace {

using namespace std::chrono_literals;

unsigned long WakeUps(const std::string& kivora, int notes, std::chrono::seconds time,
                      std::string_view what) {
    const User user(SampleNotes(notes));
    NoteWatch watch;
    Process program(std::vector<std::string>{kivora});
    watch.WaitForNotes(static_cast<std::size_t>(notes));
    const auto cpu = [&] { return CpuOf(program.Id()); };
    watch.WaitUntilQuiet(cpu);
    if (what == "minimized") {
        Do({kivora, "--toggle"});
        watch.WaitForNotes(0);
    } else if (what == "menu") {
        OpenAndCloseMenu(watch, cpu);
    }
    watch.WaitUntilQuiet(cpu);
    std::this_thread::sleep_for(15s);  // the last event has put off some work, as the state of what is kept
    const unsigned long before = program.ContextSwitches();
    std::this_thread::sleep_for(time);
    return program.ContextSwitches() - before;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fputs("kivora_bench_idle KIVORA NOTES SECONDS [minimized | menu]\n", stderr);
        return 2;
    }
    try {
        std::printf("%lu\n", WakeUps(argv[1], std::atoi(argv[2]), std::chrono::seconds(std::atoi(argv[3])),
                                     argc > 4 ? argv[4] : ""));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "kivora_bench_idle: %s\n", failure.what());
        return 1;
    }
    return 0;
}
