// Every dialog of the program, checked for what all of them owe their users: keys that work, controls that
// are named, texts that are not cut at any size of dialog and font.
#include <wx/button.h>
#include <wx/checklst.h>
#include <wx/choice.h>
#include <wx/gauge.h>
#include <wx/listbox.h>
#include <wx/listctrl.h>
#include <wx/nativewin.h>
#include <wx/panel.h>
#include <wx/spinctrl.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <map>
#include <set>

#include "base/Text.h"
#include "dialogs/frmDialog.h"
#include "net/frmSendOverNetworkProgress.h"
#include "tests/addressbook/Entries.h"
#include "tests/app/AllDialogs.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Messages.h"

namespace {

using namespace std::chrono_literals;

// Keys that are there twice because the captions are fixed: they lead to one control after the other.
const std::map<std::string, std::wstring> kSharedKeys = {
    {"address book", L"a"},  // "Be&arbeiten...", "&Alle"
    {"address book, picking", L"a"},
    {"e-mail", L"t"},  // "Be&treff:", "Ak&tualisieren"
};

// Dialogs in which something is under way that Enter is not to stop, although their only button has the
// focus.
const std::set<std::string> kWithoutDefault = {"sending", "printing"};

// What the tables of keys in the help say, dialog by dialog: the key with Alt, and a word of the caption.
const std::map<std::string, std::vector<std::wstring>> kKeysInHelp = {
    {"note", {L"o OK", L"b Abbrechen"}},
    {"export", {L"a Alle", L"k Keine", L"t Aktualisieren"}},
    {"import", {L"a Alle", L"k Keine"}},
    {"print",
     {L"a Alle", L"k Keine", L"l Links", L"r Rechts", L"o Oben", L"u Unten", L"f Notizformatierung"}},
    {"e-mail", {L"e Empfänger", L"a Alle", L"k Keine"}},
    {"network", {L"e Empfänger", L"a Alle", L"k Keine"}},
    {"address book", {L"n Neu", L"l Löschen", L"k Keine"}},
};

template <class... Kinds>
bool IsOneOf(const wxWindow* window) {
    return (dynamic_cast<const Kinds*>(window) || ...);
}

bool HoldsControls(const wxWindow* window) {
    return IsOneOf<wxDialog, wxPanel, wxStaticBox>(window) && !window->GetChildren().empty();
}

// All visible windows of the dialog in tab order, what is inside of a control left out.
std::vector<wxWindow*> ControlsOf(wxWindow* parent) {
    std::vector<wxWindow*> all;
    for (wxWindow* child : parent->GetChildren()) {
        if (child->IsTopLevel() || !child->IsShown()) continue;
        all.push_back(child);
        if (HoldsControls(child)) std::ranges::copy(ControlsOf(child), std::back_inserter(all));
    }
    return all;
}

wchar_t KeyOf(const wxWindow* window) {
    if (!IsOneOf<wxButton, wxCheckBox, wxRadioButton, wxStaticText, wxStaticBox>(window)) return 0;
    const int place = wxControl::FindAccelIndex(window->GetLabel());
    if (place == wxNOT_FOUND) return 0;
    const wxString text = wxControl::RemoveMnemonics(window->GetLabel());
    return static_cast<wchar_t>(wxTolower(text[static_cast<std::size_t>(place)]));
}

// How a failure calls a window.
std::string Called(const wxWindow* window) {
    return (wxString(window->GetClassInfo()->GetClassName()) + L" \"" + window->GetLabel() + L"\"")
        .utf8_string();
}

std::string Text(const wxSize& size) { return std::to_string(size.x) + "x" + std::to_string(size.y); }

std::string Text(const wxRect& rect) {
    return std::to_string(rect.x) + "," + std::to_string(rect.y) + " " + std::to_string(rect.width) + "x" +
           std::to_string(rect.height);
}

// Where a window stands on the screen. A frame says something else of itself than its parent does.
wxRect PlaceOf(const wxWindow* window) {
    if (window->IsTopLevel()) return {window->ClientToScreen(wxPoint()), window->GetClientSize()};
    return {window->GetParent()->ClientToScreen(window->GetPosition()), window->GetSize()};
}

bool IsCut(wxWindow* window) {
    if (window->HasFlag(wxST_ELLIPSIZE_END) && IsOneOf<wxStaticText>(window)) return false;
    window->InvalidateBestSize();
    const wxSize size = window->GetSize();
    if (IsOneOf<wxStaticBox>(window))
        return size.x < window->GetTextExtent(wxControl::RemoveMnemonics(window->GetLabel())).x;
    if (const auto* label = dynamic_cast<wxStaticText*>(window); label && !ShowsAllOfText(*label))
        return true;
    const wxSize best = window->GetBestSize();
    if (IsOneOf<wxButton, wxCheckBox, wxRadioButton, wxStaticText, wxChoice, wxSpinCtrl>(window))
        return size.x < best.x || size.y < best.y;
    if (const auto* text = dynamic_cast<wxTextCtrl*>(window); text && !text->IsMultiLine())
        return size.y < window->GetCharHeight() + 4;
    if (IsOneOf<wxTextCtrl, wxListBox, wxListCtrl, wxNativeWindow>(window))
        return size.y < 3 * window->GetParent()->GetCharHeight();
    return false;
}

void ExpectEverythingInItsPlace(DialogWindow& dialog) {
    const std::vector<wxWindow*> all = ControlsOf(&dialog);
    for (wxWindow* window : all) {
        wxWindow* parent = window->GetParent();
        const wxRect place = PlaceOf(window), room = PlaceOf(parent);
        EXPECT_TRUE(room.Contains(place)) << Called(window) << " " << Text(place) << " in " << Text(room);
        EXPECT_FALSE(IsCut(window)) << Called(window) << " " << Text(place) << ", best "
                                    << Text(window->GetBestSize());
        for (const wxWindow* other : all) {
            if (other == window) break;
            if (other->GetParent() == parent) {
                EXPECT_FALSE(place.Intersects(PlaceOf(other)))
                    << Called(window) << " " << Text(place) << ", " << Called(other) << " "
                    << Text(PlaceOf(other));
            }
        }
    }
    // All dialogs keep the same distance to their border, but for one whose arrow stands at places of its
    // own.
    if (dynamic_cast<frmSendOverNetworkProgress*>(&dialog)) return;
    const int margin = dialog.FromDIP(kDialogMargin);
    wxRect used;
    for (const wxWindow* window : all) {
        if (window->GetParent() == &dialog) used.Union(window->GetRect());
    }
    const wxSize client = dialog.GetClientSize();
    EXPECT_EQ(used.y, margin);
    EXPECT_EQ(client.y - used.GetBottom() - 1, margin);
    EXPECT_EQ(client.x - used.GetRight() - 1, margin);
}

// Waits until the dialog is on the screen within the frame that the window manager gives it.
void Settle(DialogWindow& dialog) {
    RunUntil([&] { return dialog.IsActive() && dialog.GetSize() != dialog.GetClientSize(); });
    RunEvents();
    wxTheApp->ProcessIdle();  // the order of the Tab key is set when there is nothing else to do
}

class Dialogs : public StoreTest {
  protected:
    Dialogs() {
        for (const wchar_t* text : {L"Käse, Brot und zwei Flaschen Wein", L"Tante anrufen"}) {
            store.AdoptNote({.text = text});
        }
        for (const wchar_t* name : {L"Büro", L"Flur"}) {
            AddAddressBookEntry({name, L"10.0.0.1", L""});
        }
        all = AllDialogs(store, [this] { cancelled = true; });
    }
    ~Dialogs() override { EmptyAddressBook(); }

    // Does something with each dialog on the screen.
    void ForEach(const std::function<void(const std::string& name, DialogWindow&)>& act) {
        for (const NamedDialog& each : all) {
            SCOPED_TRACE(each.name);
            DialogWindow* dialog = each.make();
            dialog->Show();
            Settle(*dialog);
            act(each.name, *dialog);
            dialog->Destroy();
            RunEvents(std::chrono::milliseconds(1));
        }
    }

    std::vector<NamedDialog> all;
    bool cancelled = false;
};

TEST_F(Dialogs, KeysAreUniqueAndLeadToTheControlBehindThem) {
    ForEach([](const std::string& name, DialogWindow& dialog) {
        const std::vector<wxWindow*> controls = ControlsOf(&dialog);
        std::map<wchar_t, wxWindow*> keys;
        std::wstring shared;
        for (std::size_t i = 0; i < controls.size(); ++i) {
            wxWindow* caption = controls[i];
            const wchar_t key = KeyOf(caption);
            if (!key) continue;
            if (!keys.emplace(key, caption).second) shared += key;
            // This button stands outside of all panels, and its key has to be found from within them.
            const bool isButton = caption->GetId() == wxID_CANCEL;
            if (!isButton && !IsOneOf<wxStaticText, wxStaticBox>(caption)) continue;
            std::size_t target = isButton ? i : i + 1;
            while (target < controls.size() &&
                   (!controls[target]->IsFocusable() ||
                    IsOneOf<wxStaticText, wxStaticBox, wxPanel>(controls[target])))
                ++target;
            ASSERT_LT(target, controls.size()) << Called(caption);
            bool pressed = false;
            const auto press = [&pressed](wxCommandEvent&) { pressed = true; };
            if (IsOneOf<wxButton>(controls[target])) controls[target]->Bind(wxEVT_BUTTON, press);
            const bool moved = KeyMovesTo(dialog, key, *controls[target]);
            // Behind a label a button is pressed or gone to, as the platform has it.
            EXPECT_TRUE((moved && !isButton) || RunUntil([&] { return pressed; })) << Called(caption);
        }
        const auto told = kKeysInHelp.find(name);
        if (told != kKeysInHelp.end()) {
            for (const std::wstring& key : told->second) {
                const wxString caption = keys.contains(key[0]) ? keys[key[0]]->GetLabel() : wxString();
                EXPECT_TRUE(wxControl::RemoveMnemonics(caption).Contains(key.substr(2)))
                    << caption.utf8_str().data() << ": " << ToUtf8(key);
            }
        }
        EXPECT_EQ(shared, kSharedKeys.count(name) ? kSharedKeys.at(name) : L"");
    });
}

TEST_F(Dialogs, F1OpensTheHelpEnterConfirmsAndEscCancels) {
    MessageRecorder told;  // no help lies beside the tests
    ForEach([&](const std::string& name, DialogWindow& dialog) {
        told.messages.clear();
        TypeKey(WXK_F1);
        const bool hasPage = name != "message" && name != "question";
        ASSERT_EQ(told.messages.size(), hasPage ? 1u : 0u);
        EXPECT_TRUE(!hasPage || told.messages[0].find(L".html") != std::wstring::npos);

        wxWindow* button = nullptr;
        for (const int id : {wxID_OK, wxID_CANCEL}) {
            wxWindow* found = dialog.FindWindow(id);
            if (!button && found && found->IsShown()) button = found;
        }
        ASSERT_TRUE(button);
        cancelled = false;
        if (kWithoutDefault.count(name)) {
            PressKey(*button, WXK_RETURN);
            EXPECT_FALSE(RunUntil([&] { return cancelled || dialog.State() == DialogState::Cancel; }, 500ms));
        } else {
            EXPECT_TRUE(IsDefaultOf(dialog, *button));
        }
        TypeKey(WXK_ESCAPE);
        EXPECT_TRUE(cancelled || dialog.State() == DialogState::Cancel);
    });
}

TEST_F(Dialogs, KeysChooseInListsAndEnterPressesTheDefaultButton) {
    ForEach([](const std::string&, DialogWindow& dialog) {
        for (wxWindow* window : ControlsOf(&dialog)) {
            if (!IsOneOf<wxListBox, wxListCtrl, wxNativeWindow>(window) || !window->IsEnabled()) continue;
            auto* const list = dynamic_cast<wxListBox*>(window);
            if (list && list->GetCount() > 1) {
                PressKey(*list, WXK_END);
                TypeKey(WXK_HOME);
                if (auto* const boxes = dynamic_cast<wxCheckListBox*>(list)) {
                    const bool before = boxes->IsChecked(0);
                    TypeKey(WXK_SPACE);
                    EXPECT_NE(boxes->IsChecked(0), before);
                } else if (list->HasMultipleSelection()) {
                    TypeKey(WXK_DOWN, wxMOD_SHIFT);
                    EXPECT_TRUE(list->IsSelected(0) && list->IsSelected(1));
                }
            }
            wxWindow* button = dialog.GetDefaultItem();
            ASSERT_TRUE(button);
            int pressed = 0;
            button->Bind(wxEVT_BUTTON, [&](wxCommandEvent&) { ++pressed; });
            button->Disable();
            PressKey(*window, WXK_RETURN);
            const DialogState before = dialog.State();  // a list may confirm the choice of a row by itself
            if (button->GetId() == wxID_OK && !button->IsEnabled()) TypeKey(WXK_RETURN, wxMOD_CONTROL);
            RunEvents();
            EXPECT_TRUE(button->IsEnabled() || (pressed == 0 && dialog.State() == before));
            button->Enable();
            PressKey(*window, WXK_RETURN);
            EXPECT_TRUE(RunUntil([&] { return pressed == 1; })) << Called(window);
        }
    });
}

TEST_F(Dialogs, TheTabKeyComesToEveryControlInOrder) {
    ForEach([](const std::string&, DialogWindow& dialog) {
        const std::vector<wxWindow*> controls = ControlsOf(&dialog);
        std::vector<std::string> expected, stops;
        for (wxWindow* window : controls) {
            if (IsOneOf<wxStaticText, wxStaticBox, wxStaticBitmap, wxGauge>(window) || HoldsControls(window))
                continue;
            // Of several options the chosen one is a stop; the arrow keys lead to the others.
            const auto* option = dynamic_cast<const wxRadioButton*>(window);
            if (window->IsEnabled() && window->AcceptsFocusFromKeyboard() && (!option || option->GetValue()))
                expected.push_back(Called(window));
        }
        for (const wxWindow* stop : TabStops(dialog, controls)) stops.push_back(stop ? Called(stop) : "?");
        EXPECT_EQ(stops, expected);
    });
}

TEST_F(Dialogs, ReadersKnowEveryControl) {
    const std::set<std::string> empty = {"", "unknown", "invalid", "filler", "panel", "drawing area"};
    ForEach([&](const std::string&, DialogWindow& dialog) {
        EXPECT_NE(SpokenRole(dialog), "frame");  // as which a window of the program would be announced
        for (wxWindow* window : ControlsOf(&dialog)) {
            if (HoldsControls(window)) continue;
            // A label that is empty for now has nothing to say, and a picture without a name is an ornament.
            const bool silent = IsOneOf<wxStaticText>(window) && window->GetLabel().empty();
            if (silent || IsOneOf<wxStaticBitmap>(window)) continue;
            EXPECT_EQ(empty.count(SpokenRole(*window)), 0u) << Called(window) << ": " << SpokenRole(*window);
            EXPECT_NE(SpokenName(*window), "") << Called(window);
        }
    });
}

TEST_F(Dialogs, NothingIsCut) {
    ForEach([](const std::string&, DialogWindow& dialog) {
        const wxSize first = dialog.GetSize();
        const auto check = [&](const char* name, const wxSize& wanted) {
            SCOPED_TRACE(name);
            dialog.SetSize(wanted);
            RunUntil([&] { return dialog.GetSize() == wanted; });
            dialog.Layout();
            RunEvents();
            ExpectEverythingInItsPlace(dialog);
        };
        check("at first", first);
        if (!dialog.HasFlag(wxRESIZE_BORDER)) return;
        const wxSize least = dialog.GetMinSize();
        EXPECT_LE(least.x, first.x);
        EXPECT_LE(least.y, first.y);
        check("smallest", least);
        check("grown", first + wxSize(200, 150));
    });
}

struct Begun : DialogWindow {
    using DialogWindow::Begin;
};

TEST_F(Dialogs, TheSizeIsKeptForTheNextOfItsKind) {
    for (const NamedDialog& each : all) {
        SCOPED_TRACE(each.name);
        wxSize sizes[2];
        const auto run = [&](wxSize& size, const wxSize& growth) {
            DialogWindow* dialog = each.make();
            if (!dialog->HasFlag(wxRESIZE_BORDER)) return dialog->Destroy();
            (dialog->*&Begun::Begin)();
            Settle(*dialog);
            size = dialog->GetClientSize() + growth;
            dialog->SetClientSize(size);
            RunUntil([&] { return dialog->GetClientSize() == size; });
            RunEvents();
            size = dialog->GetClientSize();
            dialog->Close();
            return wxPendingDelete.Member(dialog) || dialog->Destroy();  // some do so themselves
        };
        run(sizes[0], wxSize(40, 30));
        run(sizes[1], wxSize());
        EXPECT_EQ(sizes[0], sizes[1]) << Text(sizes[0]) << ", " << Text(sizes[1]);
    }
}

}  // namespace
