#include <gtest/gtest.h>

#include <fstream>

#include "app/NoteServices.h"
#include "base/DataFolder.h"
#include "base/FileName.h"
#include "base/Text.h"
#include "dialogs/Clipboard.h"
#include "exchange/ImportFile.h"
#include "exchange/ImportNotes.h"
#include "exchange/KeptFile.h"
#include "exchange/KeptNotes.h"
#include "notes/BringBack.h"
#include "tests/support/Events.h"
#include "tests/support/Files.h"
#include "tests/support/Messages.h"
#include "tests/support/Support.h"

namespace {

namespace fs = std::filesystem;

class KeptNotesTest : public testing::Test, protected MessageRecorder {
  protected:
    KeptNotesTest() { fs::remove_all(bin_); }
    ~KeptNotesTest() override {
        Store().UnloadAllNotes();
        Store().SaveNotes();
        fs::remove_all(bin_);
    }

    NoteStore& Store() { return services_.Store(); }
    frmNote& AddNote(const std::wstring& text) { return Store().AddNote({.text = text}); }
    static auto FilesIn(const fs::path& folder) { return std::distance(fs::directory_iterator(folder), {}); }

    const fs::path bin_ = DataFolder() / "papierkorb";
    NoteServices services_;
};

}  // namespace

TEST_F(KeptNotesTest, AFloodTakesNoPlaceOfOtherNotes) {
    Store().DeleteFlood({&AddNote(L"eins"), &AddNote(L"zwei")});
    EXPECT_EQ(Store().CountNotes(), 0u);
    EXPECT_TRUE(KeptBin().Read().notes.empty());
    ASSERT_EQ(FilesIn(bin_ / "flut"), 1);
    EXPECT_EQ(ListNotes(fs::directory_iterator(bin_ / "flut")->path()),
              (std::vector<std::wstring>{L"eins", L"zwei"}));
}

TEST_F(KeptNotesTest, TheBinHoldsTheLastHundred) {
    for (int i = 0; i <= 100; ++i) EXPECT_TRUE(KeepDeletedNote({.text = std::to_wstring(i)}).Kept());
    const std::vector<BinnedNote> content = KeptBin().Read().notes;
    ASSERT_EQ(content.size(), 100u);
    EXPECT_EQ(content.back().note.text, L"1");
}

TEST_F(KeptNotesTest, WithoutABinTheTextGoesToTheClipboard) {
    fs::create_directories(bin_.parent_path());
    std::ofstream(bin_) << "in the way";
    frmNote& first = AddNote(L"eins");
    frmNote& second = AddNote(L"zwei Ω");
    Store().DeleteNote(first);
    Store().DeleteNote(second);
    EXPECT_EQ(Store().CountNotes(), 0u);
    EXPECT_TRUE(messages.empty());  // not before the notes are gone
    RunPosted();
    EXPECT_EQ(messages, std::vector<std::wstring>{
                            L"Papierkorb|16|Die Notiz konnte nicht im Papierkorb aufgehoben werden.\r\n"
                            L"Ihr Text liegt jetzt in der Zwischenablage."});
    EXPECT_EQ(WithCrLf(ClipboardText().value_or(L"")), L"eins\r\n\r\nzwei Ω");
    KeptBin bin;
    EXPECT_FALSE(BringBackLast(Store(), bin));
    EXPECT_TRUE(messages.back().starts_with(L"Papierkorb|16|Der Papierkorb kann nicht gelesen werden."));
}

TEST_F(KeptNotesTest, WhatIsBroughtBackIsWhereItWasAndLeavesTheBin) {
    AddNote(L"bleibt");
    std::vector<Note> deleted;
    std::vector<frmNote*> together;
    for (const wchar_t* text : {L"eins", L"zwei Ω", L"drei"}) {
        const double left = 3000 + 300.0 * static_cast<double>(deleted.size());
        deleted.push_back({.text = text,
                           .look = {.bold = true, .color = kGreen},
                           .place = {left, 450, 3000, 2000},
                           .foreground = true});
        together.push_back(&Store().AdoptNote(deleted.back()));
    }
    Store().DeleteNote(AddNote(L"früher"));
    ASSERT_TRUE(Store().DeleteTogether(together).Kept());
    EXPECT_EQ(FilesIn(bin_), 2);
    EXPECT_TRUE(IsForTheUserOnly(bin_));

    KeptBin bin;
    const std::vector<BinnedNote> content = bin.Read().notes;
    ASSERT_EQ(content.size(), 4u);
    EXPECT_EQ(content[3].note.text, L"früher");
    EXPECT_TRUE(BringBack(Store(), bin, {content[1]}));
    EXPECT_TRUE(BringBack(Store(), bin, {content[1]}));  // it has gone from there
    EXPECT_EQ(Store().CopyNotes().back(), deleted[1]);
    EXPECT_TRUE(Store().Notes().back()->IsShown());
    EXPECT_EQ(Store().CountNotes(), 2u);

    BringBackLast(Store(), bin);
    EXPECT_EQ(Store().CountNotes(), 4u);
    // What cannot be kept stays in the bin.
    Store().OnLongText = [](const Note&) { return KeepResult{KeepFailure::DiskFull}; };
    Store().DeleteNote(AddNote(std::wstring(5000, L'x')));
    EXPECT_FALSE(BringBackLast(Store(), bin));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Papierkorb|16|Die Notiz bleibt im Papierkorb"));
    messages.clear();
    // What is there again and cannot leave the bin is not offered again.
    const fs::path file = bin_ / FilePath(bin.Read().notes.front().file);
    const std::string bytes = Content(file);
    Store().OnLongText = [&](const Note&) { return std::ofstream(file), KeepResult(); };
    EXPECT_TRUE(BringBackLast(Store(), bin));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Papierkorb|16|Die Notiz ist wieder da, konnte aber nicht"));
    messages.clear();
    std::ofstream(file, std::ios::binary) << bytes;
    BringBackLast(Store(), bin);
    EXPECT_EQ(Store().Notes().back()->Text(), L"früher");
    fs::remove(file);
    EXPECT_TRUE(fs::is_empty(bin_));
    EXPECT_TRUE(messages.empty());
    BringBackLast(Store(), bin);
    EXPECT_EQ(messages, std::vector<std::wstring>{L"Papierkorb|64|Im Papierkorb liegt keine Notiz."});
    std::ofstream(bin_ / "2026-11-21 09.05.00.000 Milch.kvr");
    EXPECT_EQ(bin.Read().unreadable, 1u);
}

TEST_F(KeptNotesTest, WhoBringsALongTextIsToldWhetherItIsKeptElsewhere) {
    const fs::path elsewhere = DataFolder() / "lange-notizen", file = DataFolder() / "lang.kvr";
    const std::wstring text(5000, L'x');
    Store().OnLongText = KeepLongNote;
    fs::create_directories(DataFolder());
    std::ofstream(file, std::ios::binary) << KeptFileBytes({{.text = text, .place = {300, 300, 3000, 3000}}});
    for (const bool works : {false, true}) {
        fs::remove_all(elsewhere);
        if (!works) std::ofstream(elsewhere) << "in the way";
        EXPECT_EQ(ImportNotes(Store(), FileName(file)), works);
        EXPECT_EQ(Store().Notes().back()->Text(), text);
        messages.clear();
        EXPECT_EQ(services_.AddText(text + L"y"), works);
        ASSERT_EQ(messages.size(), 1u);
        EXPECT_TRUE(messages[0].starts_with(works ? L"Neue Notiz|64|Der Text hat mehr als etwa 4000 Zeichen."
                                                  : L"Neue Notiz|16|Die Notiz konnte nicht gespeichert"));
    }
    EXPECT_EQ(Store().Notes().back()->Text(), text + L"y");
    EXPECT_TRUE(KeepLongNote(Store().Notes().back()->Content()).Kept());
    EXPECT_EQ(FilesIn(elsewhere), 2) << "each once";
    EXPECT_FALSE(services_.AddText(L" \r\n") || services_.AddText(std::wstring(70'000, L'x')));
    EXPECT_EQ(messages.size(), 2u) << "of the one that is too long";
    fs::remove_all(elsewhere);
    fs::remove(file);
}
