// The keyboard's part of a note window.
#include <wx/event.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "dialogs/Clipboard.h"
#include "notes/NoteKeys.h"
#include "notes/NotePlace.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"

namespace {

// The way of one press of an arrow.
constexpr int kStepPixels = 10;

constexpr NotePart kFocusOrder[] = {NotePart::Body, NotePart::chkForeground, NotePart::cmdMinimize};

NotePart Neighbour(NotePart part, int way) {
    constexpr int kCount = std::size(kFocusOrder);
    int at = 0;
    while (kFocusOrder[at] != part) ++at;
    return kFocusOrder[(at + way + kCount) % kCount];
}

// What a press adds to the place and the size of the note, in steps.
constexpr struct {
    NoteCommand command;
    int x, y, width, height;
} kSteps[] = {
    {NoteCommand::MoveLeft, -1, 0, 0, 0}, {NoteCommand::MoveUp, 0, -1, 0, 0},
    {NoteCommand::MoveRight, 1, 0, 0, 0}, {NoteCommand::MoveDown, 0, 1, 0, 0},
    {NoteCommand::Narrower, 0, 0, -1, 0}, {NoteCommand::Lower, 0, 0, 0, -1},
    {NoteCommand::Wider, 0, 0, 1, 0},     {NoteCommand::Higher, 0, 0, 0, 1},
};

}  // namespace

void frmNote::TakeFocus(bool showing) {
    usedByKeys_ = showing;
    ActivateNoteWindow(*this);
    if (showing) ShowFocus(NotePart::Body);
}

void frmNote::ShowFocus(std::optional<NotePart> part) {
    if (part == focus_) return;
    focus_ = part;
    Refresh();
    access_->Focus(part.value_or(NotePart::Body));
}

void frmNote::OnKey(wxKeyEvent& event) {
    FollowControlKey(event, true);
    const NotePart part = focus_.value_or(NotePart::Body);
    const NoteCommand command = CommandOfKey(event.GetKeyCode(), event.GetModifiers());
    if (command == NoteCommand::None || HasCapture()) {
        event.Skip();
        return;
    }
    Untouched(false);
    usedByKeys_ = true;
    ShowFocus(part);
    for (const auto& step : kSteps) {
        if (step.command == command)
            StepBy(kStepPixels * step.x, kStepPixels * step.y, kStepPixels * step.width,
                   kStepPixels * step.height);
    }
    switch (command) {
        case NoteCommand::Menu:
            Later([](NoteHost& host, frmNote& note) {
                host.ShowPopupMenu(note, note.ClientToScreen(note.MenuPoint()));
            });
            break;
        case NoteCommand::Enter:
            PressPart(part);
            break;
        case NoteCommand::Press:
            if (part != NotePart::Body) PressPart(part);
            break;
        case NoteCommand::NextControl:
            ShowFocus(Neighbour(part, 1));
            break;
        case NoteCommand::PreviousControl:
            ShowFocus(Neighbour(part, -1));
            break;
        case NoteCommand::NextNote:
            Later([](NoteHost& host, frmNote& note) { host.FocusNextNote(note, true); });
            break;
        case NoteCommand::PreviousNote:
            Later([](NoteHost& host, frmNote& note) { host.FocusNextNote(note, false); });
            break;
        case NoteCommand::Find:
            Later([](NoteHost& host, frmNote& note) { host.FindNotes(note); });
            break;
        case NoteCommand::BringBack:
            Later([](NoteHost& host, frmNote&) { host.BringBackDeleted(); });
            break;
        case NoteCommand::Copy:
            CopyText(Text());
            break;
        case NoteCommand::Paste:
            Later([](NoteHost& host, frmNote&) {
                if (const std::optional<std::wstring> text = ClipboardText()) host.AddText(*text);
            });
            break;
        default:
            break;
    }
}

void frmNote::StepBy(int x, int y, int width, int height) {
    const wxRect before = windowPlace_.Now();
    wxRect after(before.x + x, before.y + y, before.width + width, before.height + height);
    after.width = std::max(after.width, static_cast<int>(kSmallestPixels));
    after.height = std::max(after.height, static_cast<int>(kSmallestPixels));
    // Not where it could not be seen.
    if (after == before || OnScreens(after) != after) return;
    sizedElsewhere_ = false;
    windowPlace_.Ask(after);
    ArrangeParts(after.GetSize());
    StorePlace(before, after);
    stepped_ = true;
}

// A key that is held down makes many steps; they are saved once.
void frmNote::SaveSteps() {
    if (std::exchange(stepped_, false)) host_.SaveNotes();
}

void frmNote::OnKeyUp(wxKeyEvent& event) {
    FollowControlKey(event, false);
    SaveSteps();
    event.Skip();
}

void frmNote::OnActivate(wxActivateEvent& event) {
    if (!event.GetActive()) {
        SaveSteps();
        ShowFocus(std::nullopt);
    } else if (dialogsAbove_) {
        DialogsAbove::Again();  // it has come to the front by that
    }
    event.Skip();
}

wxPoint frmNote::MenuPoint() const {
    const TwipsRect& part = focus_ == NotePart::chkForeground ? layout_.chkForeground
                            : focus_ == NotePart::cmdMinimize ? layout_.cmdMinimize
                                                              : layout_.lblMessage;
    const bool text = &part == &layout_.lblMessage;
    return {static_cast<int>(part.left / TwipsPerPixelX(*this)),
            static_cast<int>((text ? part.top + kFrame : part.Bottom()) / TwipsPerPixelY(*this))};
}
