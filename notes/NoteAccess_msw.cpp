#include <wx/access.h>

#include "notes/NoteAccess.h"
#include "notes/NoteWindow.h"

namespace {

// The note itself is a text; its two controls are elements of it without windows.
class MsaaNote : public wxAccessible {
  public:
    MsaaNote(wxFrame& window, ReadableNote& note) : wxAccessible(&window), window_(window), note_(note) {}

    static int IdOf(NotePart part) {
        return part == NotePart::chkForeground ? 1 : part == NotePart::cmdMinimize ? 2 : wxACC_SELF;
    }
    static NotePart PartOf(int id) {
        return id == 1 ? NotePart::chkForeground : id == 2 ? NotePart::cmdMinimize : NotePart::Body;
    }

    wxAccStatus GetChildCount(int* count) override {
        *count = 2;
        return wxACC_OK;
    }
    wxAccStatus GetChild(int id, wxAccessible** child) override {
        *child = id == wxACC_SELF ? this : nullptr;
        return wxACC_OK;
    }
    wxAccStatus GetName(int id, wxString* name) override {
        *name = id == wxACC_SELF ? NoteAccess::Name(note_.Content()) : NoteAccess::NameOfControl(PartOf(id));
        return wxACC_OK;
    }
    wxAccStatus GetDescription(int id, wxString* description) override {
        if (id != wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
        *description = NoteAccess::Description(note_.Content());
        return wxACC_OK;
    }
    wxAccStatus GetValue(int id, wxString* value) override {
        if (id != wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
        *value = note_.Content().text;
        return wxACC_OK;
    }
    wxAccStatus GetRole(int id, wxAccRole* role) override {
        *role = id == 1   ? wxROLE_SYSTEM_CHECKBUTTON
                : id == 2 ? wxROLE_SYSTEM_PUSHBUTTON
                          : wxROLE_SYSTEM_STATICTEXT;
        return wxACC_OK;
    }
    wxAccStatus GetState(int id, long* state) override {
        *state = wxACC_STATE_SYSTEM_FOCUSABLE;
        if (!window_.IsShown()) *state |= wxACC_STATE_SYSTEM_INVISIBLE;
        if (window_.IsActive() && note_.Focus() == PartOf(id)) *state |= wxACC_STATE_SYSTEM_FOCUSED;
        if (id == wxACC_SELF) *state |= wxACC_STATE_SYSTEM_READONLY;
        if (id == 1 && note_.Content().foreground) *state |= wxACC_STATE_SYSTEM_CHECKED;
        return wxACC_OK;
    }
    wxAccStatus GetFocus(int* id, wxAccessible** child) override {
        *id = IdOf(note_.Focus());
        *child = *id == wxACC_SELF ? this : nullptr;
        return wxACC_OK;
    }
    wxAccStatus GetDefaultAction(int id, wxString* action) override {
        *action = id == wxACC_SELF ? L"Bearbeiten" : L"Drücken";
        return wxACC_OK;
    }
    wxAccStatus DoDefaultAction(int id) override {
        note_.PressPart(PartOf(id));
        return wxACC_OK;
    }
    wxAccStatus GetLocation(wxRect& rect, int id) override {
        rect = window_.GetRect();
        if (id == wxACC_SELF) return wxACC_OK;
        const TwipsRect& part = id == 1 ? note_.Layout().chkForeground : note_.Layout().cmdMinimize;
        const double x = TwipsPerPixelX(window_), y = TwipsPerPixelY(window_);
        rect = wxRect(rect.x + static_cast<int>(part.left / x), rect.y + static_cast<int>(part.top / y),
                      static_cast<int>(part.width / x), static_cast<int>(part.height / y));
        return wxACC_OK;
    }

  private:
    wxFrame& window_;
    ReadableNote& note_;
};

class MsaaAccess : public NoteAccess {
  public:
    MsaaAccess(wxFrame& window, ReadableNote& note) : window_(window) {
        window.SetAccessible(new MsaaNote(window, note));
    }

    void Changed() override {
        Tell(wxACC_EVENT_OBJECT_NAMECHANGE, wxACC_SELF);
        Tell(wxACC_EVENT_OBJECT_VALUECHANGE, wxACC_SELF);
        Tell(wxACC_EVENT_OBJECT_STATECHANGE, MsaaNote::IdOf(NotePart::chkForeground));
    }
    void Focus(NotePart part) override {
        if (window_.IsActive()) Tell(wxACC_EVENT_OBJECT_FOCUS, MsaaNote::IdOf(part));
    }

  private:
    void Tell(int event, int id) {
        if (window_.IsShown()) wxAccessible::NotifyEvent(event, &window_, wxOBJID_CLIENT, id);
    }

    wxFrame& window_;
};

}  // namespace

std::unique_ptr<NoteAccess> NoteAccess::Of(wxFrame& window, ReadableNote& note) {
    return std::make_unique<MsaaAccess>(window, note);
}
