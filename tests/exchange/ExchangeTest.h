#pragma once
// A store of notes, a folder of files, and the commands with which notes go from one to the other.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "dialogs/Wait.h"
#include "exchange/ExportNotes.h"
#include "exchange/ImportNotes.h"
#include "exchange/PatientRead.h"
#include "exchange/frmExport.h"
#include "exchange/frmImport.h"
#include "model/StoredImage.h"
#include "registry/clsRegistry.h"
#include "tests/exchange/SampleNotes.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"
#include "tests/support/Files.h"
#include "tests/support/Messages.h"

class ExchangeTest : public testing::Test, protected MessageRecorder {
  protected:
    using Messages = std::vector<std::wstring>;

    ExchangeTest() {
        Registry().DeleteKey(kSettingsKey);
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        answer = MessageAnswer::Yes;
        readPatience = std::chrono::hours(1);  // however busy the machine is
    }
    ~ExchangeTest() override {
        ResetWaits();
        store.UnloadAllNotes();
        Registry().DeleteKey(kSettingsKey);
        std::filesystem::remove_all(folder);
        RunEvents();
    }

    frmNote& Add(const ExportedNote& record) { return store.AdoptNote(ToNote(record)); }
    std::vector<ExportedNote> StoredNotes() const {
        std::vector<ExportedNote> notes;
        for (const NotePtr& note : store.Notes()) notes.push_back(ToRecord(note->Content()));
        return notes;
    }

    std::filesystem::path Write(const wchar_t* name, const std::string& bytes) const {
        std::ofstream(folder / FilePath(name), std::ios::binary) << bytes;
        return folder / FilePath(name);
    }
    std::wstring Name(const wchar_t* name) const { return FileName(folder / FilePath(name)); }

    // Runs the command and does something with its dialog.
    template <class Dialog>
    void Run(const std::function<void(Dialog&)>& act, const std::function<void()>& command) {
        const WhenShown<Dialog> user([&](Dialog& dialog) {
            ++opened;
            act(dialog);
        });
        command();
    }
    void Export(const std::function<void(frmExport&)>& act) {
        Run<frmExport>(act, [this] { ExportNotes(store); });
    }
    void Import(const std::function<void(frmImport&)>& act) {
        Run<frmImport>(act, [this] { ImportNotes(store); });
    }

    const std::filesystem::path folder = SharedDataFolder() / FilePath(L"kivora austausch ü test");
    NoteRecorder recorder;
    NoteStore store{recorder};
    int opened = 0;
};
