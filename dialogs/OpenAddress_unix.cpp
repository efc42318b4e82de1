#include <gtk/gtk.h>

#include <memory>
#include <optional>

#include "base/FileName.h"
#include "dialogs/OpenAddress.h"
#include "dialogs/Wait.h"

namespace {

// A program that finds nobody to open the address ends soon and says so; one that lives on is opening it.
constexpr std::chrono::milliseconds kFailsWithin{1000};

bool OpenByDesktop(const std::string& address) {
    const bool isFile = g_path_is_absolute(address.c_str());
    g_autofree char* uri =
        isFile ? g_filename_to_uri(address.c_str(), nullptr, nullptr) : g_strdup(address.c_str());
    // Carries the user's click along, so that the opened window may come to the front.
    g_autoptr(GAppLaunchContext) context =
        G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(gdk_display_get_default()));
    return uri && g_app_info_launch_default_for_uri(uri, context, nullptr);
}

// Shared with the callback, which may come after we have stopped waiting.
struct Child {
    std::optional<int> status;
};

void OnEnded(GPid pid, int status, gpointer data) {
    (*static_cast<std::shared_ptr<Child>*>(data))->status = status;
    g_spawn_close_pid(pid);
    WakeWaits();
}

bool OpenByProgram(std::string address) {
    std::string program = "xdg-open";
    char* arguments[] = {program.data(), address.data(), nullptr};
    GPid pid = 0;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD);
    if (!g_spawn_async(nullptr, arguments, nullptr, flags, nullptr, nullptr, &pid, nullptr)) return false;
    const auto child = std::make_shared<Child>();
    g_child_watch_add_full(G_PRIORITY_DEFAULT, pid, OnEnded, new std::shared_ptr<Child>(child),
                           [](gpointer data) { delete static_cast<std::shared_ptr<Child>*>(data); });
    WaitUntil([&] { return child->status.has_value(); }, kFailsWithin);
    return !child->status || *child->status == 0;
}

}  // namespace

bool OpenAddress(const std::wstring& address) {
    const std::string bytes = FilePath(address).native();
    return OpenByDesktop(bytes) || OpenByProgram(bytes);
}
