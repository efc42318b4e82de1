#include <gtk/gtk.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include "base/Text.h"
#include "dialogs/FindWidget_unix.h"
#include "print/frmPrinterSetup_unix.h"
#include "tests/support/Controls.h"
#include "tests/support/Events.h"

namespace {

// The widget of a control that has the focus when the control has it, or speaks for it.
GtkWidget* InnerWidget(GtkWidget* widget) {
    return FindWidget(widget, [](GtkWidget* each) {
        return gtk_widget_get_can_focus(each) && !GTK_IS_SCROLLED_WINDOW(each);
    });
}

AtkObject* Accessible(wxWindow& control) {
    GtkWidget* inner = control.IsTopLevel() ? nullptr : InnerWidget(control.GetHandle());
    return gtk_widget_get_accessible(inner ? inner : control.GetHandle());
}

}  // namespace

std::string SpokenName(wxWindow& control) {
    AtkObject* object = Accessible(control);
    if (const char* name = atk_object_get_name(object); name && *name) return name;
    std::string spoken;
    AtkRelationSet* relations = atk_object_ref_relation_set(object);
    if (AtkRelation* relation = atk_relation_set_get_relation_by_type(relations, ATK_RELATION_LABELLED_BY)) {
        GPtrArray* labels = atk_relation_get_target(relation);
        for (unsigned i = 0; i < labels->len; ++i) {
            const char* name = atk_object_get_name(ATK_OBJECT(labels->pdata[i]));
            if (!spoken.empty()) spoken += ' ';
            spoken += name ? name : "";
        }
    }
    g_object_unref(relations);
    return spoken;
}

std::string SpokenRole(wxWindow& control) {
    return atk_role_get_name(atk_object_get_role(Accessible(control)));
}

void TypeKey(int key, int modifiers) {
    wxUIActionSimulator().Char(key, modifiers);
    // Its events are in the queue now, before all that is put off.
    gdk_display_sync(gdk_display_get_default());
    RunPosted();
}

void PressKey(wxWindow& control, int key, int modifiers) {
    gtk_widget_grab_focus(InnerWidget(control.GetHandle()));
    TypeKey(key, modifiers);
}

bool KeyMovesTo(wxDialog& dialog, wchar_t key, wxWindow& control) {
    auto* window = GTK_WINDOW(dialog.GetHandle());
    gtk_window_set_focus(window, nullptr);
    TypeKey(key, wxMOD_ALT);
    GtkWidget* focused = gtk_window_get_focus(window);
    return focused &&
           (focused == control.GetHandle() || gtk_widget_is_ancestor(focused, control.GetHandle()));
}

std::vector<wxWindow*> TabStops(wxDialog& dialog, const std::vector<wxWindow*>& controls) {
    auto* window = GTK_WINDOW(dialog.GetHandle());
    gtk_window_set_focus(window, nullptr);
    std::vector<wxWindow*> stops;
    GtkWidget* first = nullptr;
    for (std::size_t step = 0; step < 2 * controls.size(); ++step) {
        TypeKey(WXK_TAB);
        GtkWidget* focused = gtk_window_get_focus(window);
        if (focused == first) break;
        if (!first) first = focused;
        wxWindow* stop = nullptr;  // the innermost one that has it
        for (wxWindow* each : controls) {
            if (focused == each->GetHandle() || gtk_widget_is_ancestor(focused, each->GetHandle()))
                stop = each;
        }
        stops.push_back(stop);
    }
    return stops;
}

bool HasKeyboard(wxWindow& control) {
    GtkWidget* const window = gtk_widget_get_toplevel(control.GetHandle());
    return gtk_window_get_focus(GTK_WINDOW(window)) == InnerWidget(control.GetHandle());
}

void Click(wxListBox& list, int row) {
    auto* rows = GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(list.GetHandle())));
    GtkTreePath* path = gtk_tree_path_new_from_indices(row, -1);
    gtk_tree_view_set_cursor(rows, path, nullptr, FALSE);
    gtk_tree_path_free(path);
}

std::wstring CellText(wxWindow& list, int row, int column) {
    auto* const rows = GTK_TREE_VIEW(InnerWidget(list.GetHandle()));
    GtkTreeViewColumn* const shown = gtk_tree_view_get_column(rows, column);
    GtkTreeModel* const model = gtk_tree_view_get_model(rows);
    GtkTreeIter at{};
    if (!gtk_tree_model_iter_nth_child(model, &at, nullptr, row)) return L"no such row";
    gtk_tree_view_column_cell_set_cell_data(shown, model, &at, FALSE, FALSE);
    GList* const cells = gtk_cell_layout_get_cells(GTK_CELL_LAYOUT(shown));
    g_autofree char* text = nullptr;
    g_object_get(g_list_last(cells)->data, "text", &text, nullptr);
    g_list_free(cells);
    return FromUtf8(text ? text : "");
}

void ClickBox(wxWindow& list, int row) {
    auto* const rows = GTK_TREE_VIEW(InnerWidget(list.GetHandle()));
    GList* const boxes = gtk_cell_layout_get_cells(GTK_CELL_LAYOUT(gtk_tree_view_get_column(rows, 0)));
    g_signal_emit_by_name(boxes->data, "toggled", std::to_string(row).c_str());
    g_list_free(boxes);
}

void ClickHeading(wxWindow& list, int column) {
    gtk_tree_view_column_clicked(
        gtk_tree_view_get_column(GTK_TREE_VIEW(InnerWidget(list.GetHandle())), column));
}

bool IsDefaultOf(wxDialog& dialog, wxWindow& button) {
    return gtk_window_get_default_widget(GTK_WINDOW(dialog.GetHandle())) == button.GetHandle();
}

wxColour PaperBehindText(wxTextCtrl& box) {
    wxTextAttr look;
    return box.GetStyle(1, look) ? look.GetBackgroundColour() : wxColour();
}

bool ShowsAllOfText(const wxStaticText&) { return true; }  // wxWidgets gives it what GTK asks for

std::vector<NamedDialog> DialogsOfPlatform() {
    return {{"printer set-up", [] {
                 return new frmPrinterSetup(
                     {{L"Büro", L"Flur"},
                      L"Büro",
                      L"Der Druckdienst antwortet nicht. Gedruckt wird in eine PDF-Datei."},
                     {L"Büro", {}}, [](const std::wstring&) { return PaperSize(); });
             }}};
}
