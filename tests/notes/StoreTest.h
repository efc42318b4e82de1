#pragma once
// A store of notes over a registry that holds nothing of the program, before and after.

#include <gtest/gtest.h>

#include <functional>

#include "model/StoredImage.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"

class StoreTest : public testing::Test {
  protected:
    StoreTest() { Registry().DeleteKey(kSettingsKey); }
    ~StoreTest() override {
        ResetWaits();
        store.UnloadAllNotes();
        RunEvents();
        Registry().DeleteKey(kSettingsKey);
    }

    frmNote& Add(const std::wstring& text) { return store.AddNote({.text = text}); }

    // Runs a command and does something with the dialog that it opens.
    template <class Dialog>
    static void Run(const std::function<void()>& command, const std::function<void(Dialog&)>& act) {
        bool opened = false;
        const WhenShown<Dialog> user([&](Dialog& dialog) {
            opened = true;
            act(dialog);
        });
        command();
        EXPECT_TRUE(opened);
    }

    NoteRecorder recorder;
    NoteStore store{recorder};
};
