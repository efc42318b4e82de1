#include <wx/checkbox.h>
#include <wx/fontutil.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

#include <utility>

#include "dialogs/FindWidget_unix.h"
#include "notes/NoteFont.h"
#include "notes/PropertiesLook.h"

namespace {

struct InsertionLimit {
    glong more;
    std::function<void(std::size_t)> cut;
    int userActions = 0;  // that are going on
};

void OnUserAction(GtkTextBuffer*, InsertionLimit* limit) { ++limit->userActions; }
void OnUserActionEnd(GtkTextBuffer*, InsertionLimit* limit) { --limit->userActions; }

void OnInsertion(GtkTextBuffer* buffer, GtkTextIter* where, const char* text, int bytes,
                 InsertionLimit* limit) {
    const glong most = gtk_text_buffer_get_char_count(buffer) + limit->more;
    if (limit->userActions == 0 || bytes <= most) return;
    const glong characters = g_utf8_strlen(text, bytes);
    if (characters <= most) return;
    g_signal_stop_emission_by_name(buffer, "insert-text");
    limit->cut(static_cast<std::size_t>(characters - most));
    const char* end = g_utf8_offset_to_pointer(text, most);
    gtk_text_buffer_insert(buffer, where, text, static_cast<int>(end - text));
}

}  // namespace

// By attributes of the label: a check box that gets a font of its own after it was made is laid out too small
// at first. wxFont gives a layout the attributes for lines under and through the text only.
void StyleCaption(wxCheckBox& box, const NoteLook& look) {
    GtkWidget* label = FindWidget(box.GetHandle(), GTK_TYPE_LABEL);
    if (!label) return;
    wxFont font = box.GetFont();
    SetStyles(font, look);
    PangoLayout* layout = gtk_widget_create_pango_layout(label, gtk_label_get_text(GTK_LABEL(label)));
    font.GTKSetPangoAttrs(layout);
    PangoAttrList* lines = pango_layout_get_attributes(layout);
    PangoAttrList* attributes = lines ? pango_attr_list_copy(lines) : pango_attr_list_new();
    pango_attr_list_insert(attributes, pango_attr_font_desc_new(font.GetNativeFontInfo()->description));
    gtk_label_set_attributes(GTK_LABEL(label), attributes);
    pango_attr_list_unref(attributes);
    g_object_unref(layout);
    box.InvalidateBestSize();
}

// Not by the colours of wxWidgets: they paint over the circle, too.
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

void PutCaret(wxTextCtrl& box, std::size_t characters) {
    const auto position = static_cast<long>(characters);
    box.SetInsertionPoint(position);
    box.ShowPosition(position);
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

void LimitInsertions(wxTextCtrl& box, std::size_t more, std::function<void(std::size_t)> cut) {
    GtkWidget* widget = FindWidget(box.GetHandle(), GTK_TYPE_TEXT_VIEW);
    if (!widget) return;
    GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(widget));
    auto* limit = new InsertionLimit{static_cast<glong>(more), std::move(cut)};
    g_signal_connect(buffer, "begin-user-action", G_CALLBACK(OnUserAction), limit);
    g_signal_connect(buffer, "end-user-action", G_CALLBACK(OnUserActionEnd), limit);
    g_signal_connect_data(
        buffer, "insert-text", G_CALLBACK(OnInsertion), limit,
        [](gpointer data, GClosure*) { delete static_cast<InsertionLimit*>(data); }, GConnectFlags());
}
