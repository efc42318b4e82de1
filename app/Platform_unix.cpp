#include <fcntl.h>
#include <gdk/gdkx.h>
#include <glib-unix.h>
#include <gtk/gtk.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>
#include <wx/toplevel.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "app/Platform.h"
#include "base/FileName.h"
#include "base/Text.h"
#include "res/Theme.h"

namespace {

// wxWidgets passes no key on when no control of the window has the focus; this handler is called before it.
gboolean OnEvent(GtkWidget*, GdkEvent* event, gpointer window) {
    if (event->type != GDK_KEY_PRESS) return FALSE;
    wxKeyEvent key(wxEVT_KEY_DOWN);
    return static_cast<wxTopLevelWindow*>(window)->HandleWindowEvent(key);
}

gboolean OnEndRequest(gpointer quit) {
    (*static_cast<std::function<void()>*>(quit))();
    return G_SOURCE_CONTINUE;
}

std::function<void()> lastCall;

int OnDisplayDead(Display*) {
    if (const std::function<void()> last = std::exchange(lastCall, {})) last();
    _exit(1);  // as GDK does: Xlib is in no state for what would happen at an orderly end
}

// Text input would be limited to ASCII in the locale "C", and GTK's own texts are translated only where that
// of messages is another one: in newer versions of glibc one that is no "C.UTF-8" either. wxWidgets keeps GTK
// from choosing.
void ChooseLocale() {
    const char* const locale = std::setlocale(LC_ALL, "");
    if (!locale || std::strcmp(std::setlocale(LC_CTYPE, nullptr), "C") == 0)
        std::setlocale(LC_ALL, "C.UTF-8");
    if (*std::setlocale(LC_MESSAGES, nullptr) != 'C') return;
    for (const char* const name : {"de_DE.UTF-8", "en_US.UTF-8", "C.UTF-8"})
        if (std::setlocale(LC_MESSAGES, name)) return;
}

const char* const kGl = "GDK_GL";
std::string usersGl;

}  // namespace

std::vector<std::wstring> Arguments(int argc, char** argv) {
    std::vector<std::wstring> arguments;
    for (int i = 1; i < argc; ++i) arguments.push_back(FileName(argv[i]));
    return arguments;
}

void PrintOut(const std::wstring& text) { std::fputs(ToUtf8(text).c_str(), stdout); }
void PrintError(const std::wstring& text) { std::fputs(ToUtf8(text).c_str(), stderr); }

std::string ReadInput(std::size_t most) {
    std::string input;
    char buffer[4096];
    for (std::size_t count;
         input.size() <= most && (count = std::fread(buffer, 1, sizeof buffer, stdin)) > 0;)
        input.append(buffer, count);
    return input;
}

std::function<bool()> StartResident() {
    const std::string program = FilePath(ProgramPath()).native();
    const pid_t process = fork();
    if (process < 0) return {};
    if (process == 0) {
        setsid();
        const int nowhere = open("/dev/null", O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
        execl(program.c_str(), "kivora", nullptr);
        _exit(127);
    }
    return [process] { return waitpid(process, nullptr, WNOHANG) != 0; };
}

void PrepareEnvironment() {
    // Nobody sees GTK's texts while the program comes up: it asks for the names of a thousand properties, and
    // each would be looked up in files that stay in memory.
    setenv("LANGUAGE", "C", 1);
    // Asking the display for 3D, of which notes need none, would load the driver for it.
    if (const char* const value = std::getenv(kGl)) usersGl = value;
    setenv(kGl, "disable", 1);
    // glibc would set memory aside for each of the few threads that the libraries start, which need next to
    // none.
    mallopt(M_ARENA_MAX, 1);

    ChooseLocale();
    PutOffTheme();
    // Wayland tells no program where its windows are, and notes have to know it. GDK keeps a copy for each
    // time it is told.
    [[maybe_unused]] static const bool told = (gdk_set_allowed_backends("x11,*"), true);
}

void StyleWindows() {
    // The icon in the notification area is a window with nothing but an image. It has no text, but is laid
    // out by the measures of its font, and that of the notes is in memory anyway.
    // Notes look the same in all themes: none of them needs to be laid out again when one is read.
    GtkCssProvider* const css = gtk_css_provider_new();
    gtk_css_provider_load_from_data(
        css, "window > image { font: 12pt Arial; } window.note, window.note * { all: unset; }", -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(css),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(css);
    RestoreThemeChoice();
}

void SettleDown() {
    const auto settle = [](gpointer) -> gboolean {
        // The program speaks German wherever it runs, and GTK's own texts must not differ. Values are
        // only replaced here: other threads may be reading the environment.
        setenv("LANGUAGE", "de", 1);
        setenv(kGl, usersGl.c_str(), 1);
        malloc_trim(0);
        return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_LOW, settle, nullptr, nullptr);  // drawing comes before
}

EndRequests::EndRequests(std::function<void()> quit) : quit_(std::move(quit)) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sources_.push_back(g_unix_signal_add(signal, OnEndRequest, &quit_));
    }
}

EndRequests::~EndRequests() {
    for (const unsigned source : sources_) g_source_remove(source);
}

void WhenDisplayDies(std::function<void()> last) {
    lastCall = std::move(last);
    XSetIOErrorHandler(OnDisplayDead);
}

void NeverFocus(wxTopLevelWindow& window) {
    auto* native = GTK_WINDOW(window.GetHandle());
    gtk_window_set_accept_focus(native, FALSE);
    gtk_window_set_focus_on_map(native, FALSE);
    gtk_window_set_type_hint(native, GDK_WINDOW_TYPE_HINT_SPLASHSCREEN);
    g_signal_connect(native, "event", G_CALLBACK(OnEvent), &window);
}

std::wstring UsedLibraries() { return L"die Bibliotheken wxWidgets, GTK, SQLite und CUPS"; }

bool SeesNotesOfAllUsers() { return false; }
