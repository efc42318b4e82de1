#include <gtk/gtk.h>
#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

#include "notes/PropertiesLook.h"

namespace {

// The first widget of a type at or below another one; the toolkit wraps its controls in others.
GtkWidget* FindWidget(GtkWidget* widget, GType type) {
    if (G_TYPE_CHECK_INSTANCE_TYPE(widget, type)) return widget;
    if (!GTK_IS_CONTAINER(widget)) return nullptr;
    GtkWidget* found = nullptr;
    GList* children = gtk_container_get_children(GTK_CONTAINER(widget));
    for (GList* each = children; each && !found; each = each->next) {
        found = FindWidget(GTK_WIDGET(each->data), type);
    }
    g_list_free(children);
    return found;
}

PangoAttribute* AttributeOf(CaptionLook look) {
    switch (look) {
        case CaptionLook::Bold:
            return pango_attr_weight_new(PANGO_WEIGHT_BOLD);
        case CaptionLook::Italic:
            return pango_attr_style_new(PANGO_STYLE_ITALIC);
        default:
            return pango_attr_underline_new(PANGO_UNDERLINE_SINGLE);
    }
}

}  // namespace

// By attributes of the label: a font of its own does not underline, and a check box that gets one after it
// was made is laid out too small at first.
void StyleCaption(wxCheckBox& box, CaptionLook look) {
    GtkWidget* label = FindWidget(box.GetHandle(), GTK_TYPE_LABEL);
    if (!label) return;
    PangoAttrList* attributes = pango_attr_list_new();
    pango_attr_list_insert(attributes, AttributeOf(look));
    gtk_label_set_attributes(GTK_LABEL(label), attributes);
    pango_attr_list_unref(attributes);
    box.InvalidateBestSize();
}

// Not by the toolkit's colours: they paint over the circle, too.
void PaintButton(wxRadioButton& button, const wxColour& face, const wxColour& ink) {
    const wxString style = L"radiobutton { background: " + face.GetAsString(wxC2S_HTML_SYNTAX) +
                           L"; color: " + ink.GetAsString(wxC2S_HTML_SYNTAX) +
                           L"; } radio { background: white; color: black; border-color: black; }";
    GtkCssProvider* provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, style.utf8_str(), -1, nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(button.GetHandle()),
                                   GTK_STYLE_PROVIDER(provider), GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
}

void PadText(wxTextCtrl& box, int pixels) {
    GtkWidget* widget = FindWidget(box.GetHandle(), GTK_TYPE_TEXT_VIEW);
    if (!widget) return;
    auto* text = GTK_TEXT_VIEW(widget);
    gtk_text_view_set_left_margin(text, pixels);
    gtk_text_view_set_right_margin(text, pixels);
    gtk_text_view_set_top_margin(text, pixels);
    gtk_text_view_set_bottom_margin(text, pixels);
}
