// Whether a note is on the screen, how high it stands there, and the icon that it has instead.
#include "model/NoteColor.h"
#include "notes/NoteGesture.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"
#include "res/Resources.h"
#include "tray/Notification.h"

void frmNote::EndMinimized() {
    minimized_ = false;
    Untouched(false);
    Notification::MenusChanged();
    // X11 may not have told GTK its place yet when it was hidden, soon after it had come up.
    if (!IsShown()) PlaceAsStored();
    if (notNotizIcon_) notNotizIcon_->HideIcon();
    host_.ForgetMinimizedNote(*this);
}

void frmNote::Minimized(bool on) {
    if (!on) {
        EndMinimized();
        return ShowStacked();
    }
    minimized_ = true;
    Untouched(false);
    Notification::MenusChanged();
    if (!notNotizIcon_) {
        notNotizIcon_ = std::make_unique<Notification>();
        notNotizIcon_->Events.DblClick = [this](int button) {
            if (button != 1) return;
            Minimized(false);
            BringToFront();
        };
        notNotizIcon_->Events.MouseUp = [this](int button) {
            if (button == 2) OpenMenu();
        };
        notNotizIcon_->Events.ContextMenu = [this] { OpenMenu(); };
        notNotizIcon_->Menu = {[this] { return host_.TrayMenu(*this); },
                               [this](int id) { host_.RunFromTrayMenu(*this, id); }};
    }
    RenewIcon();
    Hide();
    dialogsAbove_.reset();
    notNotizIcon_->ShowIcon();
}

void frmNote::RenewIcon() {
    const int icon = NoteIcon(Color());
    notNotizIcon_->SetIconFile(ResourcePicture(icon ? icon : static_cast<int>(kProgramIcon)));
    notNotizIcon_->IconToolTip(ShortText(Text()));
}

void frmNote::Unload() {
    if (notNotizIcon_) notNotizIcon_->HideIcon();
    gesture_.reset();
    Hide();
    dialogsAbove_.reset();
    Destroy();
}

void frmNote::UnloadAtEnd() {
    if (notNotizIcon_) notNotizIcon_->HideIcon();
    delete this;
}

void frmNote::ShowStacked() {
    if (minimized_) return;
    ShowNoteWindow(*this, Foreground());
    if (!Foreground()) {
        dialogsAbove_.reset();
    } else if (!dialogsAbove_) {
        dialogsAbove_.emplace();
    } else {
        DialogsAbove::Again();
    }
}

void frmNote::BringToFront() {
    RaiseNoteWindow(*this);
    if (dialogsAbove_) DialogsAbove::Again();
}

void frmNote::OnClose(wxCloseEvent& event) {
    // A note goes by being deleted or with the program; whoever closes its window only puts it away.
    if (!event.CanVeto()) return;
    event.Veto();
    if (!minimized_) PutAway(IsActive());
}

void frmNote::PutAway(bool hasKeyboard) {
    // Another note gets the keyboard while this program still has it: as soon as an active window goes,
    // Windows may give it to another program, and lets nobody take it from there.
    Hover(NotePart::Body);
    minimized_ = true;
    if (hasKeyboard) host_.PassKeyboardOn(*this);
    Minimized(true);
}
