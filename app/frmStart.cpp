#include "app/frmStart.h"

#include <wx/menu.h>

#include "app/Autostart.h"
#include "app/FirstHint.h"
#include "app/PopupMenu.h"
#include "app/frmInfo.h"
#include "dialogs/DialogStack.h"
#include "dialogs/Help.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "model/KeepReason.h"
#include "notes/NoteStore.h"
#include "notes/NoteWindow.h"
#include "notes/basNotes.h"
#include "res/Resources.h"

namespace {

// Added to the items' numbers: wxWidgets uses ids up to this itself.
constexpr int kIdOffset = wxID_HIGHEST;

void Fill(wxMenu& menu, const std::vector<TrayMenuEntry>& entries) {
    for (const TrayMenuEntry& entry : entries) {
        const int id = kIdOffset + entry.id;
        switch (entry.kind) {
            case TrayMenuEntry::Separator:
                menu.AppendSeparator();
                continue;
            case TrayMenuEntry::Submenu: {
                auto* submenu = new wxMenu;
                Fill(*submenu, entry.submenu);
                menu.Append(id, entry.caption, submenu);
                break;
            }
            case TrayMenuEntry::Check:
                menu.AppendCheckItem(id, entry.caption)->Check(entry.checked);
                break;
            case TrayMenuEntry::Command:
                menu.Append(id, entry.caption);
                break;
        }
        menu.Enable(id, entry.enabled);
    }
}

}  // namespace

frmStart::frmStart(NoteStore& store, std::function<void()> quit)
    : wxFrame(nullptr, wxID_ANY, L"Kivora"), store_(store) {
    using enum MenuItem;
    commands_ = {
        {mnuNotizNeu, [this] { NewNote(store_); }},
        {mnuNotizBearbeiten,
         [this] {
             if (frmNote* note = PopupNote()) EditNote(store_, *note);
         }},
        {mnuNotizLöschen, [this] { DeletePopupNote(); }},
        {mnuNotizVordergrund, [this] { TogglePopupNoteForeground(); }},
        {mnuMinimizeAll, [this] { store_.MinimizeAll(); }},
        {mnuUnMinimizeAll, [this] { store_.UnMinimizeAll(); }},
        {mnuNotizWindowsStart, [this] { ToggleAutostart(); }},
        {mnuNotizHilfe, [] { ShowHelp(L"index.html"); }},
        {mnuNotizInfo, [] { frmInfo::Open(); }},
        {mnuNotizEnde, std::move(quit)},
    };

    ShowState({});
    notIcon.Events.DblClick = [this](int button) {
        if (button == 1) RunCommand(mnuNotizNeu);
    };
    notIcon.Events.MouseUp = [this](int button) {
        if (button == 1) {
            // A dialog that is open gets the keyboard; it may have been opened by the same double click,
            // which ends with another release of the button. Without a dialog the topmost note gets the
            // keyboard, so that the notes can be reached from the icon without the mouse.
            frmNote* top = ActivateApplication();
            if (!ActivateNewestDialog() && top) ActivateNoteWindow(*top);
        }
        if (button == 2) notIcon.Events.ContextMenu();
    };
    notIcon.Events.ContextMenu = [this] {
        ActivateNewestDialog();  // the notes stay where they are: they may lie below what the user looks at
        ShowPopupMenu(nullptr);
    };
    notIcon.Menu = {[this] { return DescribeMenu(nullptr); },
                    [this](int id) { RunFromTrayMenu(nullptr, id); }};
}

frmStart::~frmStart() = default;

void frmStart::GreetNewcomer() {
    hint_ = std::make_unique<FirstHint>(*this, store_, [this] { return notIcon.Place(); });
}

void frmStart::ShowState(const ProgramState& state) {
    notIcon.LetIconFile(ResourcePicture(state.trouble == Trouble::None ? kProgramIcon : kTroubleIcon));
    notIcon.IconToolTip(IconTip(state));
}

void frmStart::ShowPopupMenu(frmNote* note, std::optional<wxPoint> at) {
    if (menuOpen_) return;
    hint_.reset();
    popupNoteKey_.reset();
    if (note) popupNoteKey_ = note->NoteKey();
    store_.AutostartEnabled = StartsWithSession(store_.AutostartEnabled);
    wxMenu menu;
    AppendPicture(menu, kIdOffset + IdOf(MenuItem::mnuNotizPicture), LoadPicture(kMenuBanner),
                  kMenuPictureHeight);
    Fill(menu, DescribeMenu(note));
    menuOpen_ = true;
    const std::optional<int> chosen = OpenPopupMenu(*this, menu, at);
    menuOpen_ = false;
    if (chosen && !IsQuitting()) RunForPopupNote(ItemOf(*chosen - kIdOffset));
}

void frmStart::RunForPopupNote(MenuItem item) {
    const frmNote* const note = PopupNote();
    const KeyboardReturn back(note ? store_.KeyboardTo(*note) : nullptr);
    RunCommand(item);
}

frmNote* frmStart::PopupNote() const { return popupNoteKey_ ? store_.Find(*popupNoteKey_) : nullptr; }

void frmStart::RunCommand(MenuItem item) {
    const auto found = commands_.find(item);
    if (found == commands_.end()) return;
    hint_.reset();
    const std::function<void()> command = found->second;  // which may take itself away
    command();
}

void frmStart::AddCommand(MenuItem item, std::function<void()> command) {
    commands_[item] = std::move(command);
    Notification::MenusChanged();
}

void frmStart::RemoveCommand(MenuItem item) {
    commands_.erase(item);
    Notification::MenusChanged();
}

std::vector<TrayMenuEntry> frmStart::DescribeMenu(const frmNote* note) const {
    std::set<MenuItem> available;
    for (const auto& [item, command] : commands_) available.insert(item);
    return ::DescribeMenu({.forNote = note != nullptr,
                           .noteForeground = note && note->Foreground(),
                           .notes = store_.CountNotes(),
                           .visibleNotes = store_.CountVisibleNotes(),
                           .minimizedByCommand = store_.CountMinimizedByCommand(),
                           .autostart = store_.AutostartEnabled},
                          available);
}

void frmStart::RunFromTrayMenu(frmNote* note, int id) {
    if (menuOpen_ || IsQuitting()) return;
    popupNoteKey_.reset();
    if (note) popupNoteKey_ = note->NoteKey();
    RunForPopupNote(ItemOf(id));
}

frmNote* frmStart::ActivateApplication() {
    // What there is to see of the program are its notes. Those that stay above others go last.
    frmNote* top = nullptr;
    for (const bool foreground : {false, true}) {
        for (const NotePtr& note : store_.Notes()) {
            if (note->Minimized() || note->Foreground() != foreground) continue;
            top = note.get();
            top->BringToFront();
        }
    }
    return top;
}

void frmStart::ToggleAutostart() {
    const KeepResult result = SetAutostart(store_, !store_.AutostartEnabled);
    // At once, so that entry and flag agree however the program ends.
    if (result.Kept())
        store_.SaveNotes();
    else
        ShowMessage(L"Der automatische Start von Kivora konnte nicht geändert werden.\r\n" +
                        ReasonText(result, L"die Datei für den automatischen Start"),
                    kCritical, L"Beim Start von Windows laden");
}

void frmStart::DeletePopupNote() {
    frmNote* const note = PopupNote();
    popupNoteKey_.reset();
    if (note) store_.DeleteNote(*note);
}

void frmStart::TogglePopupNoteForeground() {
    if (frmNote* note = PopupNote()) note->Foreground(!note->Foreground());
}
