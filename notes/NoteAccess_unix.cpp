#include <gtk/gtk.h>

#include "base/basText.h"
#include "notes/NoteAccess.h"
#include "notes/frmNote.h"

namespace {

// The window has the name. Inside, the widget that gets the keys stands for the part of the note that has the
// keyboard: it takes on that part's role and name.
class AtkNote : public NoteAccess {
  public:
    explicit AtkNote(frmNote& note) : note_(note) {}

    void Changed() override {
        AtkObject* const window = gtk_widget_get_accessible(note_.GetHandle());
        atk_object_set_name(window, ToUtf8(Name(note_)).c_str());
        atk_object_set_description(window, ToUtf8(Description(note_)).c_str());
        DescribePart(note_.Focus());
    }

    void Focus(NotePart part) override {
        AtkObject* const object = DescribePart(part);
        // To readers it is another one now that has the keyboard.
        if (note_.IsActive()) atk_object_notify_state_change(object, ATK_STATE_FOCUSED, TRUE);
    }

  private:
    AtkObject* DescribePart(NotePart part) {
        AtkObject* const object = gtk_widget_get_accessible(note_.m_wxwindow);
        std::wstring name = NameOfControl(part);
        AtkRole role = ATK_ROLE_LABEL;
        if (part == NotePart::chkForeground) {
            role = ATK_ROLE_CHECK_BOX;
            name += note_.Foreground() ? L", aktiviert" : L", nicht aktiviert";
        } else if (part == NotePart::cmdMinimize) {
            role = ATK_ROLE_PUSH_BUTTON;
        } else {
            name = note_.Text();
        }
        atk_object_set_role(object, role);
        atk_object_set_name(object, ToUtf8(name).c_str());
        return object;
    }

    frmNote& note_;
};

}  // namespace

std::unique_ptr<NoteAccess> NoteAccess::Of(frmNote& note) { return std::make_unique<AtkNote>(note); }
