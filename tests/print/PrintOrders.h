#pragma once
// What the tests of printing share.

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/button.h>

#include <functional>

#include "model/StoredImage.h"
#include "print/PrintNotes.h"
#include "print/frmPrint.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"
#include "tests/support/Messages.h"

// A store to print from, and the messages shown meanwhile.
class PrintFixture : public testing::Test, protected MessageRecorder {
  protected:
    PrintFixture() { Registry().DeleteKey(kSettingsKey); }
    ~PrintFixture() override {
        store.UnloadAllNotes();
        Registry().DeleteKey(kSettingsKey);
    }

    frmNote& Add(const std::wstring& text, const std::wstring& date = L"21.11.2026, 09:05:00") {
        return store.AdoptNote({.text = text, .creationTime = date});
    }

    // Runs the command, does something with its dialog, and gives what the command gives.
    bool Print(PrintSystem& printing, std::function<void(frmPrint&)> act) {
        const WhenShown<frmPrint> user(std::move(act));
        return PrintNotes(store, printing);
    }

    NoteRecorder recorder;
    NoteStore store{recorder};
};
