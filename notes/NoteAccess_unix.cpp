#include <gtk/gtk-a11y.h>
#include <gtk/gtk.h>

#include <optional>

#include "base/Text.h"
#include "notes/NoteAccess.h"
#include "notes/NoteText_unix.h"
#include "notes/NoteWindow.h"

namespace {

// What the widgets of a note know it by, and the object that stands for the one inside.
const char* const kNote = "kivora-note";
const char* const kPart = "kivora-read-part";

// The window has the name. Inside, the widget that gets the keys stands for the part of the note that has the
// keyboard: it takes on that part's role and name. The note's text is always that widget's.
//
// GTK makes the object that a reader asks when the first reader comes, at some cost for each window. So
// nothing is set beforehand: the answers are put together when they are wanted.
class AtkNote : public NoteAccess, public ReadPart {
  public:
    AtkNote(wxFrame& window, ReadableNote& note) : window_(window), note_(note) {
        AnswerForNotes(window.m_wxwindow);
        SetData(this);
    }
    ~AtkNote() override { SetData(nullptr); }

    void Changed() override {
        if (!asked_) return;
        AtkObject* const window = gtk_widget_get_accessible(window_.GetHandle());
        g_object_notify(G_OBJECT(window), "accessible-name");
        g_object_notify(G_OBJECT(window), "accessible-description");
        AtkObject* const part = gtk_widget_get_accessible(window_.m_wxwindow);
        g_object_notify(G_OBJECT(part), "accessible-name");
        if (text_) {
            const int before = text_->Count();
            text_.reset();
            g_signal_emit_by_name(part, "text-changed::delete", 0, before);
            g_signal_emit_by_name(part, "text-changed::insert", 0, Text().Count());
        }
    }

    void Focus(NotePart) override {
        // To readers it is another one now that has the keyboard.
        if (!asked_) return;
        AtkObject* const part = gtk_widget_get_accessible(window_.m_wxwindow);
        g_object_notify(G_OBJECT(part), "accessible-role");
        g_object_notify(G_OBJECT(part), "accessible-name");
        if (window_.IsActive()) atk_object_notify_state_change(part, ATK_STATE_FOCUSED, TRUE);
    }

    const char* PartName() override {
        const NotePart part = note_.Focus();
        std::wstring name = NameOfControl(part);
        if (part == NotePart::chkForeground)
            name += note_.Content().foreground ? L", aktiviert" : L", nicht aktiviert";
        return Answer(part_, name.empty() ? note_.Content().text : name);
    }

    AtkRole PartRole() override {
        switch (note_.Focus()) {
            case NotePart::chkForeground:
                return ATK_ROLE_CHECK_BOX;
            case NotePart::cmdMinimize:
                return ATK_ROLE_PUSH_BUTTON;
            default:
                return ATK_ROLE_STATIC;
        }
    }

    // Laying it out for each letter that is asked for would be dear.
    const NoteText& Text() override {
        const NoteLayout& layout = note_.Layout();
        if (!text_ || layout.width != textWidth_ || layout.height != textHeight_)
            text_.emplace(note_.Content(), layout, TwipsPerPixelX(window_), TwipsPerPixelY(window_));
        textWidth_ = layout.width;
        textHeight_ = layout.height;
        return *text_;
    }

  private:
    void SetData(AtkNote* note) {
        g_object_set_data(G_OBJECT(window_.GetHandle()), kNote, note);
        g_object_set_data(G_OBJECT(window_.m_wxwindow), kNote, note);
    }

    // The note that the object belongs to, null for all other windows and controls.
    static AtkNote* Asked(AtkObject* object) {
        GtkWidget* const widget = gtk_accessible_get_widget(GTK_ACCESSIBLE(object));
        auto* const note =
            widget ? static_cast<AtkNote*>(g_object_get_data(G_OBJECT(widget), kNote)) : nullptr;
        if (note) note->asked_ = true;
        return note;
    }

    // Notes have their answers, everything else GTK's.
    static void AnswerForNotes(GtkWidget* anyInside) {
        static AtkObjectClass window;                 // as GTK answers
        static AtkObject* (*accessible)(GtkWidget*);  // as GTK makes one
        static const bool done = [&] {
            auto* const windows = ATK_OBJECT_CLASS(g_type_class_ref(GTK_TYPE_WINDOW_ACCESSIBLE));
            window = *windows;
            windows->get_name = [](AtkObject* object) {
                AtkNote* const note = Asked(object);
                return note ? Answer(note->name_, Name(note->note_.Content())) : window.get_name(object);
            };
            windows->get_description = [](AtkObject* object) {
                AtkNote* const note = Asked(object);
                return note ? Answer(note->description_, Description(note->note_.Content()))
                            : window.get_description(object);
            };
            GtkWidgetClass* const inside = GTK_WIDGET_GET_CLASS(anyInside);
            accessible = inside->get_accessible;
            inside->get_accessible = [](GtkWidget* widget) {
                if (void* const made = g_object_get_data(G_OBJECT(widget), kPart)) return ATK_OBJECT(made);
                return g_object_get_data(G_OBJECT(widget), kNote) ? MakePart(widget) : accessible(widget);
            };
            return true;
        }();
        static_cast<void>(done);
    }

    static AtkObject* MakePart(GtkWidget* widget) {
        AtkObject* const object =
            MakeReadPart(widget, [](AtkObject* asked) -> ReadPart* { return Asked(asked); });
        g_object_set_data(G_OBJECT(widget), kPart, object);
        // As GTK does with those that it makes: a reader may keep the object for longer.
        const auto gone = +[](GtkWidget* destroyed, gpointer part) {
            g_object_set_data(G_OBJECT(destroyed), kPart, nullptr);
            gtk_accessible_set_widget(GTK_ACCESSIBLE(part), nullptr);
            g_object_unref(part);
        };
        g_signal_connect(widget, "destroy", G_CALLBACK(gone), object);
        return object;
    }

    // Who asks does not own what is answered.
    static const char* Answer(std::string& kept, const std::wstring& text) {
        kept = ToUtf8(text);
        return kept.c_str();
    }

    wxFrame& window_;
    ReadableNote& note_;
    bool asked_ = false;
    std::string name_, description_, part_;
    std::optional<NoteText> text_;
    double textWidth_ = 0, textHeight_ = 0;  // of the note for which it was laid out
};

}  // namespace

std::unique_ptr<NoteAccess> NoteAccess::Of(wxFrame& window, ReadableNote& note) {
    return std::make_unique<AtkNote>(window, note);
}
