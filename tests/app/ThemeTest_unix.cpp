#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/menu.h>

#include <cstdlib>

#include "app/Platform.h"
#include "app/PopupMenu.h"
#include "dialogs/DialogWindow.h"
#include "dialogs/FileChooser_unix.h"
#include "res/Theme.h"
#include "tests/app/MenuOnScreen.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"

namespace {

struct AnyDialog : DialogWindow {
    AnyDialog() : DialogWindow(Alone{}, L"Test") {}
};

// As GTK comes up in the program.
void ComeUpWithoutTheme() {
    PutOffTheme();
    g_object_notify(G_OBJECT(gtk_settings_get_default()), "gtk-application-prefer-dark-theme");
    RestoreThemeChoice();
}

bool IsThemeRead() {
    g_autoptr(GtkWidget) label = GTK_WIDGET(g_object_ref_sink(gtk_label_new("")));
    GdkRGBA color;
    return gtk_style_context_lookup_color(gtk_widget_get_style_context(label), "theme_bg_color", &color);
}

void OpenMenu() {
    wxFrame owner(nullptr, wxID_ANY, L"Test");
    wxMenu menu;
    menu.Append(1, L"Eintrag");
    Repeated::Every(std::chrono::milliseconds(10), [] {
        const auto open = MenuOnScreen::Find();
        if (open) open->close();
        return open.has_value();
    });
    OpenPopupMenu(owner, menu, wxPoint(10, 10));
}

void ShowTip() {
    g_autoptr(GtkWidget) label = GTK_WIDGET(g_object_ref_sink(gtk_label_new("")));
    gboolean shown = FALSE;
    g_signal_emit_by_name(label, "query-tooltip", 0, 0, FALSE, nullptr, &shown);
}

}  // namespace

TEST(Theme, IsReadForWhateverNeedsIt) {
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"dialog", [] { (new AnyDialog)->Destroy(); }},
        {"file dialog", [] { FileChooser(nullptr, L"Test", false); }},
        {"menu", OpenMenu},
        {"tool tip", ShowTip}};
    for (const auto& [name, make] : rows) {
        SCOPED_TRACE(name);
        ComeUpWithoutTheme();
        EXPECT_FALSE(IsThemeRead());
        make();
        EXPECT_TRUE(IsThemeRead());
    }
}

TEST(Theme, OtherProgramsGetTheUsersChoice) {
    ComeUpWithoutTheme();
    EXPECT_EQ(std::getenv("GTK_THEME"), nullptr);
    setenv("GTK_THEME", "HighContrast", 1);
    ComeUpWithoutTheme();
    EXPECT_STREQ(std::getenv("GTK_THEME"), "HighContrast");
    LoadTheme();
    unsetenv("GTK_THEME");
}

TEST(Theme, PaintsNothingIntoNotes) {
    StyleWindows();
    g_autoptr(GtkCssProvider) theme = gtk_css_provider_new();
    gtk_css_provider_load_from_data(theme, "window { background-color: red; }", -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(theme),
                                              GTK_STYLE_PROVIDER_PRIORITY_THEME);
    NoteRecorder recorder;
    NoteStore store(recorder);
    GtkStyleContext* const style = gtk_widget_get_style_context(store.AdoptNote({}).GetHandle());
    g_autoptr(GdkRGBA) color = nullptr;
    gtk_style_context_get(style, gtk_style_context_get_state(style), "background-color", &color, nullptr);
    EXPECT_EQ(color->alpha, 0);
    store.UnloadAllNotes();
    gtk_style_context_remove_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(theme));
}
