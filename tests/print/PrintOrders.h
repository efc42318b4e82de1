#pragma once
// What the tests of printing share: pressing buttons, and the dialog that is open.

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/timer.h>

#include <functional>

#include "base/basMessage.h"
#include "print/basPrint.h"
#include "print/frmPrint.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"

// The newest one of its kind.
template <class Dialog>
Dialog* ShownDialog() {
    Dialog* shown = nullptr;
    for (wxWindow* window : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<Dialog*>(window);
        if (dialog && dialog->IsShown()) shown = dialog;
    }
    return shown;
}

// Does something with a dialog as soon as it is on the screen. To be kept until then.
template <class Dialog>
class WhenShown : public wxTimer {
  public:
    explicit WhenShown(std::function<void(Dialog&)> act) : act_(std::move(act)) { Start(10); }
    void Notify() override {
        // One that has ended may still count as shown until the toolkit deletes it.
        auto* dialog = ShownDialog<Dialog>();
        if (!dialog || dialog->Tag() == L"ok" || dialog->Tag() == L"cancel") return;
        Stop();
        act_(*dialog);
    }

  private:
    std::function<void(Dialog&)> act_;
};

inline void Press(wxWindow* button) {
    wxCommandEvent event(wxEVT_BUTTON, button->GetId());
    event.SetEventObject(button);
    button->ProcessWindowEvent(event);
}

// A store to print from, and the messages shown meanwhile.
class PrintFixture : public testing::Test {
  protected:
    PrintFixture() {
        Registry().DeleteKey(kSettingsKey);
        SetMessageObserver([this](const std::wstring& text, int flags, const std::wstring& title) {
            messages.push_back(title + L"|" + std::to_wstring(flags) + L"|" + text);
            return MessageAnswer::OK;
        });
    }
    ~PrintFixture() override {
        SetMessageObserver({});
        store.UnloadAllNotes();
        Registry().DeleteKey(kSettingsKey);
    }

    frmNote& Add(const std::wstring& text, const std::wstring& date = L"21.11.2026, 09:05:00") {
        NotePtr note = store.CreateNote();
        note->Text(text);
        note->CreationTime(date);
        return store.AdoptNote(std::move(note));
    }

    // Runs the command, does something with its dialog, and gives what the command gives.
    bool Print(PrintSystem& printing, std::function<void(frmPrint&)> act) {
        const WhenShown<frmPrint> user(std::move(act));
        return PrintNotes(store, printing);
    }

    NoteRecorder recorder;
    NoteStore store{recorder};
    std::vector<std::wstring> messages;
};
