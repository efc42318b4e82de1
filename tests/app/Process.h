#pragma once
// The built program as a process, and the screen around it. Needs a display with a window manager, and on
// Linux xdotool.

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

// A folder for files of the tests, there until these end. From the first call on the program keeps its notes
// where nothing of the user's is touched.
const std::filesystem::path& TestFolder();

// Only a hang reaches this limit, also on a busy machine and under sanitizers.
constexpr std::chrono::seconds kHang{30};

class Process {
  public:
    // Starts the program with arguments. Without `display` it has none.
    explicit Process(std::vector<std::string> arguments, bool display = true);
    // A command, whose words are quoted where they have to be.
    static std::unique_ptr<Process> Doing(const std::vector<std::string>& words);
    // Where a command line is one text: a program with it, maybe with other rights and another output.
    Process(const std::wstring& program, std::wstring line, void* token = nullptr, void* output = nullptr);
    ~Process();  // kills it

    // As the user's session asks a program to end, as somebody ends it who does not ask, and as it stands
    // when something keeps it from going on.
    void AskToEnd() const;
    void Kill() const;
    void Signal(int number) const;  // where there are signals
    void Stop() const;
    void Continue() const;

    bool Ended();
    // Waits for the end; the exit code, -1 when it was killed, nothing when the time is over.
    std::optional<int> Wait(std::chrono::milliseconds limit = kHang);
    // What it wrote. After its end.
    std::string Output() const;
    std::string Errors() const;

    struct Parts;  // what the platform knows of it

  private:
    std::unique_ptr<Parts> parts_;
};

// Whether something comes to hold.
inline bool Eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit = kHang) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

// Ids of the program's visible windows, those of its icons included.
std::vector<std::string> Windows();
// True for the window of the picture that a start shows for a moment, also when it has just gone.
bool IsSplash(const std::string& id);
// The id of a window of that title, at once or waited for; empty when there is none.
std::string WindowTitled(const std::string& title);
inline std::string WaitForWindow(const std::string& title) {
    std::string id;
    Eventually([&] { return !(id = WindowTitled(title)).empty(); });
    return id;
}

// Presses "Return" or "Escape" in a window.
void Press(const std::string& window, const std::string& key);
