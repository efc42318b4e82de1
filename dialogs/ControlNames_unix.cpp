#include <wx/window.h>

#include "dialogs/ControlNames.h"
#include "dialogs/FindWidget_unix.h"

namespace {

bool TakesFocus(GtkWidget* widget) {
    return gtk_widget_get_can_focus(widget) && !GTK_IS_SCROLLED_WINDOW(widget);
}

// What readers and the focus mean by a control.
GtkWidget* WidgetOf(wxWindow& control) {
    GtkWidget* widget = FindWidget(control.GetHandle(), TakesFocus);
    return widget ? widget : control.GetHandle();
}

GtkLabel* LabelOf(wxWindow& label) {
    GtkWidget* widget = label.GetHandle();
    if (GTK_IS_FRAME(widget)) widget = gtk_frame_get_label_widget(GTK_FRAME(widget));
    widget = widget ? FindWidget(widget, GTK_TYPE_LABEL) : nullptr;
    return widget ? GTK_LABEL(widget) : nullptr;
}

void KeepJoined(GtkLabel* label, GParamSpec*, GtkWidget* target) {
    const GtkWidget* joined = gtk_label_get_mnemonic_widget(label);
    if (joined && joined != target) gtk_label_set_mnemonic_widget(label, target);
}

}  // namespace

void JoinLabel(wxWindow& label, wxWindow& control) {
    GtkLabel* widget = LabelOf(label);
    if (!widget) return;
    GtkWidget* target = WidgetOf(control);
    gtk_label_set_mnemonic_widget(widget, target);
    // When idle wxWidgets joins the caption of a frame with the control that follows the frame.
    g_signal_connect_object(widget, "notify::mnemonic-widget", G_CALLBACK(KeepJoined), target,
                            static_cast<GConnectFlags>(0));
}

bool FollowKey(wxWindow&, const wxKeyEvent&) { return false; }

void AnnounceAs(wxWindow& window, DialogRole role) {
    atk_object_set_role(gtk_widget_get_accessible(window.GetHandle()),
                        role == DialogRole::Alert ? ATK_ROLE_ALERT : ATK_ROLE_DIALOG);
}

void NameControl(wxWindow& control, const wxString& name) {
    atk_object_set_name(gtk_widget_get_accessible(WidgetOf(control)), name.utf8_str());
}

void NamePicture(wxWindow& picture, PictureRole role, const wxString& name) {
    AtkObject* object = gtk_widget_get_accessible(picture.GetHandle());
    atk_object_set_role(object, role == PictureRole::Image ? ATK_ROLE_IMAGE : ATK_ROLE_PROGRESS_BAR);
    atk_object_set_name(object, name.utf8_str());
}
