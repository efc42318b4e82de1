#include <gtk/gtk.h>

#include <atomic>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "res/Theme.h"

// Made from res/theme.
extern "C" void empty_theme_register_resource();

namespace {

// Part of the environment from PutOffTheme on, where GTK reads the name of the theme.
char choice[] = "GTK_THEME=Kivora";
std::optional<std::string> usersChoice;
bool putOff = false;

gboolean BeforeToolTip(GSignalInvocationHint*, guint, const GValue*, gpointer) {
    LoadTheme();
    return FALSE;  // not called again
}

}  // namespace

void PutOffTheme() {
    if (const char* const value = std::getenv("GTK_THEME")) usersChoice = value;
    [[maybe_unused]] static const bool registered = (empty_theme_register_resource(), true);
    choice[0] = 'G';
    putenv(choice);
    putOff = true;
}

void RestoreThemeChoice() {
    // Other threads may be reading the environment by now: a variable's value can be replaced, but one that
    // went would move others. Under another name it means nothing to anybody.
    if (usersChoice)
        setenv("GTK_THEME", usersChoice->c_str(), 1);
    else
        std::atomic_ref{choice[0]}.store('_');
    g_type_ensure(GTK_TYPE_WIDGET);
    g_signal_add_emission_hook(g_signal_lookup("query-tooltip", GTK_TYPE_WIDGET), 0, BeforeToolTip, nullptr,
                               nullptr);
}

void LoadTheme() {
    if (!std::exchange(putOff, false)) return;
    // GTK asks for the theme anew whenever its name or the wish for a dark one changes. Told of a new name,
    // wxWidgets would paint all notes again.
    g_object_notify(G_OBJECT(gtk_settings_get_default()), "gtk-application-prefer-dark-theme");
}
