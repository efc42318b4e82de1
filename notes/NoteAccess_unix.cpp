#include <gtk/gtk.h>

#include "base/basText.h"
#include "notes/NoteAccess.h"
#include "notes/frmNote.h"

namespace {

class AtkNote : public NoteAccess {
  public:
    explicit AtkNote(frmNote& note) : note_(note) {}

    void Changed() override {
        AtkObject* const window = gtk_widget_get_accessible(note_.GetHandle());
        atk_object_set_name(window, ToUtf8(Name(note_)).c_str());
        atk_object_set_description(window, ToUtf8(Description(note_)).c_str());
    }
    void Focus(NotePart) override {}

  private:
    frmNote& note_;
};

}  // namespace

std::unique_ptr<NoteAccess> NoteAccess::Of(frmNote& note) { return std::make_unique<AtkNote>(note); }
