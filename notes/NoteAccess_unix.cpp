#include <gtk/gtk-a11y.h>
#include <gtk/gtk.h>

#include "base/Text.h"
#include "notes/NoteAccess.h"

namespace {

const char* const kNote = "kivora-note";  // what the widgets of a note know it by

// The window has the name. Inside, the widget that gets the keys stands for the part of the note that has the
// keyboard: it takes on that part's role and name.
//
// GTK makes the object that a reader asks when the first reader comes, at some cost for each window. So
// nothing is set beforehand: the answers are put together when they are wanted.
class AtkNote : public NoteAccess {
  public:
    AtkNote(wxFrame& window, ReadableNote& note) : window_(window), note_(note) {
        AnswerForNotes();
        SetData(this);
    }
    ~AtkNote() override { SetData(nullptr); }

    void Changed() override {
        if (!asked_) return;
        AtkObject* const window = gtk_widget_get_accessible(window_.GetHandle());
        g_object_notify(G_OBJECT(window), "accessible-name");
        g_object_notify(G_OBJECT(window), "accessible-description");
        g_object_notify(G_OBJECT(gtk_widget_get_accessible(window_.m_wxwindow)), "accessible-name");
    }

    void Focus(NotePart) override {
        // To readers it is another one now that has the keyboard.
        if (!asked_) return;
        AtkObject* const part = gtk_widget_get_accessible(window_.m_wxwindow);
        g_object_notify(G_OBJECT(part), "accessible-role");
        g_object_notify(G_OBJECT(part), "accessible-name");
        if (window_.IsActive()) atk_object_notify_state_change(part, ATK_STATE_FOCUSED, TRUE);
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
    static void AnswerForNotes() {
        static AtkObjectClass window, inside;  // as GTK answers
        static const bool done = [] {
            auto* const windows = ATK_OBJECT_CLASS(g_type_class_ref(GTK_TYPE_WINDOW_ACCESSIBLE));
            window = *windows;
            windows->get_name = [](AtkObject* object) {
                AtkNote* const note = Asked(object);
                return note ? note->Answer(note->name_, Name(note->note_.Content()))
                            : window.get_name(object);
            };
            windows->get_description = [](AtkObject* object) {
                AtkNote* const note = Asked(object);
                return note ? note->Answer(note->description_, Description(note->note_.Content()))
                            : window.get_description(object);
            };
            auto* const parts = ATK_OBJECT_CLASS(g_type_class_ref(GTK_TYPE_CONTAINER_ACCESSIBLE));
            inside = *parts;
            parts->get_name = [](AtkObject* object) {
                AtkNote* const note = Asked(object);
                return note ? note->Answer(note->part_, note->PartName()) : inside.get_name(object);
            };
            parts->get_role = [](AtkObject* object) {
                AtkNote* const note = Asked(object);
                return note ? note->PartRole() : inside.get_role(object);
            };
            return true;
        }();
        static_cast<void>(done);
    }

    // Who asks does not own what is answered.
    static const char* Answer(std::string& kept, const std::wstring& text) {
        kept = ToUtf8(text);
        return kept.c_str();
    }

    std::wstring PartName() const {
        const NotePart part = note_.Focus();
        std::wstring name = NameOfControl(part);
        if (part == NotePart::chkForeground)
            name += note_.Content().foreground ? L", aktiviert" : L", nicht aktiviert";
        return name.empty() ? note_.Content().text : name;
    }

    AtkRole PartRole() const {
        switch (note_.Focus()) {
            case NotePart::chkForeground:
                return ATK_ROLE_CHECK_BOX;
            case NotePart::cmdMinimize:
                return ATK_ROLE_PUSH_BUTTON;
            default:
                return ATK_ROLE_LABEL;
        }
    }

    wxFrame& window_;
    ReadableNote& note_;
    bool asked_ = false;
    std::string name_, description_, part_;
};

}  // namespace

std::unique_ptr<NoteAccess> NoteAccess::Of(wxFrame& window, ReadableNote& note) {
    return std::make_unique<AtkNote>(window, note);
}
