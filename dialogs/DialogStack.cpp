#include "dialogs/DialogStack.h"

#include <wx/dialog.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "dialogs/Stacking.h"

namespace {

struct Entry {
    wxDialog* dialog;
    bool owner;
};

std::vector<Entry> stack;  // the newest last

std::function<void()> keyboardReturn;

int dialogsAbove = 0;  // how many DialogsAbove live

void KeepAllAbove(bool above) {
    for (const Entry& entry : stack) KeepAbove(*entry.dialog, above);
}

}  // namespace

void EnterDialogStack(wxDialog& dialog, bool owner) {
    LeaveDialogStack(dialog);
    stack.push_back({&dialog, owner});
    KeepAbove(dialog, DialogsAbove::Any());
}

void LeaveDialogStack(wxDialog& dialog) {
    std::erase_if(stack, [&](const Entry& entry) { return entry.dialog == &dialog; });
}

wxDialog* OwnerOfNextDialog() {
    const auto newest =
        std::find_if(stack.rbegin(), stack.rend(), [](const Entry& entry) { return entry.owner; });
    return newest == stack.rend() ? nullptr : newest->dialog;
}

bool ActivateNewestDialog() {
    if (stack.empty()) return false;
    stack.back().dialog->Raise();
    return true;
}

KeyboardReturn::KeyboardReturn(std::function<void()> giveBack)
    : before_(std::exchange(keyboardReturn, std::move(giveBack))) {}
KeyboardReturn::~KeyboardReturn() { keyboardReturn = std::move(before_); }

const std::function<void()>& KeyboardReturn::Current() { return keyboardReturn; }

DialogsAbove::DialogsAbove() {
    if (++dialogsAbove == 1) KeepAllAbove(true);
    Again();
}

DialogsAbove::~DialogsAbove() {
    if (--dialogsAbove == 0) KeepAllAbove(false);
}

bool DialogsAbove::Any() { return dialogsAbove > 0; }

void DialogsAbove::Again() {
    std::vector<wxTopLevelWindow*> dialogs;
    for (const Entry& entry : stack) dialogs.push_back(entry.dialog);
    PutInFront(dialogs);
}
