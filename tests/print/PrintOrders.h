#pragma once
// What the tests of printing share.

#include <wx/button.h>

#include "print/PrintNotes.h"
#include "print/frmPrint.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Messages.h"

// A store to print from, and the messages shown meanwhile.
class PrintFixture : protected MessageRecorder, public StoreTest {
  protected:
    frmNote& Add(const std::wstring& text, const std::wstring& date = L"21.11.2026, 09:05:00") {
        return store.AdoptNote({.text = text, .creationTime = date});
    }

    // Runs the command, does something with its dialog, and gives what the command gives.
    bool Print(PrintSystem& printing, std::function<void(frmPrint&)> act) {
        const WhenShown<frmPrint> user(std::move(act));
        return PrintNotes(store, printing);
    }
};
