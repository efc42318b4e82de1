#pragma once
// A store of notes, a folder of files, and the commands with which notes go from one to the other.

#include <filesystem>
#include <fstream>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "exchange/ExportNotes.h"
#include "exchange/ImportNotes.h"
#include "exchange/frmExport.h"
#include "exchange/frmImport.h"
#include "tests/exchange/SampleNotes.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Files.h"
#include "tests/support/Messages.h"

class ExchangeTest : protected MessageRecorder, public StoreTest {
  protected:
    using Messages = std::vector<std::wstring>;

    ExchangeTest() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        answer = MessageAnswer::Yes;
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

    void Export(const std::function<void(frmExport&)>& act) {
        Run<frmExport>([this] { ExportNotes(store); }, act);
    }
    void Import(const std::function<void(frmImport&)>& act) {
        Run<frmImport>([this] { ImportNotes(store); }, act);
    }

    const std::filesystem::path folder = SharedDataFolder() / FilePath(L"kivora austausch ü test");
};
