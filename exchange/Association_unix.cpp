#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gio/gio.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "DesktopFiles.h"
#include "base/DataFolder.h"
#include "base/DesktopEntry.h"
#include "base/FileName.h"
#include "base/NewFile.h"
#include "exchange/Association.h"
#include "res/Resources.h"

namespace {

namespace fs = std::filesystem;

constexpr int kIconSizes[] = {16, 32, 48, 128};

// What every user gets who has not installed the program: files in the user's own data folder.
fs::path TypeFile() { return SharedDataFolder() / "mime" / "packages" / "kivora.xml"; }
fs::path EntryFile(const char* name) { return SharedDataFolder() / "applications" / name; }
constexpr const char* kProgramEntryName = "kivora.desktop";
constexpr struct {
    const char* name;
    const char* text;
} kEntries[] = {
    {kProgramEntryName, kDesktopEntry},
    // For desktops whose menus do not show the program's actions.
    {"kivora.new.desktop", kNewEntry},
    // What file managers offer beside the program itself. By its name it stands behind that one in the
    // desktop's list, the first of which opens files.
    {"kivora.print.desktop", kPrintEntry},
};
fs::path IconFile(int size) {
    const std::string folder = std::to_string(size) + "x" + std::to_string(size);
    return SharedDataFolder() / "icons" / "hicolor" / folder / "apps" / "kivora.png";
}

void Replace(std::string& text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
}

// An installed entry, starting this very program.
std::string OfThisProgram(std::string entry) {
    const std::string program = FilePath(ProgramPath()).native();
    Replace(entry, "\nExec=kivora", "\nExec=" + DesktopExec(program));
    Replace(entry, "\nTryExec=kivora", "\nTryExec=" + DesktopString(program));
    return entry;
}

void WriteFile(const fs::path& file, std::string_view content) {
    g_mkdir_with_parents(file.parent_path().c_str(), 0700);
    SaveFile(file, content);
}

// Empty for a file that cannot be read.
std::string ReadFile(const fs::path& file) {
    char* bytes = nullptr;
    gsize size = 0;
    if (!g_file_get_contents(file.c_str(), &bytes, &size, nullptr)) return "";
    const std::string content(bytes, size);
    g_free(bytes);
    return content;
}

// True when the file held something else.
bool Renew(const fs::path& file, const std::string& content) {
    const bool same = ReadFile(file) == content;
    if (!same) WriteFile(file, content);
    return !same;
}

void WriteIcon(int size) {
    const wxBitmap picture = LoadPicture(kProgramIcon).GetBitmap(wxSize(size, size));
    char* bytes = nullptr;
    gsize count = 0;
    if (!gdk_pixbuf_save_to_buffer(picture.GetPixbuf(), &bytes, &count, "png", nullptr, nullptr)) return;
    WriteFile(IconFile(size), {bytes, count});
    g_free(bytes);
}

// The desktop looks things up in lists which its tools make from those files. Lists that are older than a
// file tell that the tool was not there yet, or did not come to its end.
struct Tool {
    const char* name;
    fs::path list, source;
};

bool IsOutdated(const Tool& tool) {
    std::error_code missing, ignored;
    const fs::file_time_type list = fs::last_write_time(tool.list, missing);
    return missing || list < fs::last_write_time(tool.source, ignored);
}

bool IsThere(const char* program) {
    char* path = g_find_program_in_path(program);
    g_free(path);
    return path != nullptr;
}

void Run(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                G_SPAWN_STDERR_TO_DEV_NULL);
    // Whoever may write their lists decides which programs open the user's files.
    const auto keepOthersOut = [](gpointer) { umask(umask(0) | S_IWGRP | S_IWOTH); };
    g_spawn_async(nullptr, arguments.data(), nullptr, flags, keepOthersOut, nullptr, nullptr, nullptr);
}

const std::vector<std::string> kMakeOpener = {"xdg-mime", "default", kProgramEntryName,
                                              "application/x-kivora"};

// Each works on files of its own, so nobody waits for any of them.
void RunTools() {
    Run({"update-mime-database", SharedDataFolder() / "mime"});
    Run({"update-desktop-database", SharedDataFolder() / "applications"});
    Run(kMakeOpener);
}

// True when the user or a program has said what opens the files. Else file managers open them with whatever
// entry was used last, and that may be the one that prints.
bool HasOpener() {
    const fs::path list = fs::path(g_get_user_config_dir()) / "mimeapps.list";
    g_autoptr(GKeyFile) defaults = g_key_file_new();
    return g_key_file_load_from_file(defaults, list.c_str(), G_KEY_FILE_NONE, nullptr) &&
           g_key_file_has_key(defaults, "Default Applications", "application/x-kivora", nullptr);
}

// True when this very program was installed with an entry and a type of its own where the desktop looks.
bool IsInstalled() {
    const fs::path program = FilePath(ProgramPath());
    for (const gchar* const* folder = g_get_system_data_dirs(); *folder; ++folder) {
        const fs::path data = *folder;
        std::error_code ignored;
        if (fs::equivalent(data.parent_path() / "bin" / "kivora", program, ignored) &&
            fs::exists(data / "applications" / kProgramEntryName, ignored) &&
            fs::exists(data / "mime" / "packages" / "kivora.xml", ignored)) {
            return true;
        }
    }
    return false;
}

// What another copy left for the user would hide what was installed, and outlive it. Such an entry names the
// copy's folder; one without is the installed one as the user has changed it, and stays.
void Withdraw() {
    if (ReadFile(EntryFile(kProgramEntryName)).find("\nTryExec=/") == std::string::npos) return;
    std::error_code ignored;
    for (const auto& entry : kEntries) fs::remove(EntryFile(entry.name), ignored);
    fs::remove(TypeFile(), ignored);
    for (const int size : kIconSizes) fs::remove(IconFile(size), ignored);
    RunTools();
}

gboolean RegisterNow(gpointer) {
    if (SharedDataFolder().empty()) return G_SOURCE_REMOVE;
    if (IsInstalled()) {
        Withdraw();
        if (!HasOpener()) Run(kMakeOpener);
        return G_SOURCE_REMOVE;
    }
    const bool newType = Renew(TypeFile(), kMimeType);
    bool newEntry = false;
    for (const auto& entry : kEntries)
        newEntry = Renew(EntryFile(entry.name), OfThisProgram(entry.text)) || newEntry;
    for (const int size : kIconSizes) {
        std::error_code ignored;
        if (newType || newEntry || !fs::exists(IconFile(size), ignored)) WriteIcon(size);
    }
    const Tool tools[] = {{"update-mime-database", SharedDataFolder() / "mime" / "mime.cache", TypeFile()},
                          {"update-desktop-database", SharedDataFolder() / "applications" / "mimeinfo.cache",
                           EntryFile(kProgramEntryName)}};
    bool run = newType || newEntry;
    for (const Tool& tool : tools) run = run || (IsThere(tool.name) && IsOutdated(tool));
    if (run) RunTools();
    return G_SOURCE_REMOVE;
}

}  // namespace

void RegisterWithDesktop(bool) { g_idle_add_full(G_PRIORITY_LOW, RegisterNow, nullptr, nullptr); }
