// The question what is to become of a flood of notes.
#include <wx/button.h>
#include <wx/stattext.h>

#include "net/frmFlood.h"
#include "tests/net/NetworkTest.h"

namespace {

using Answer = FloodGuard::Answer;

class FrmFlood : public NetworkTest {};

TEST_F(FrmFlood, EachWayOutIsOneAnswer) {
    const std::pair<Answer, void (*)(frmFlood&)> rows[] = {
        {Answer::GoOn, [](frmFlood& dialog) { Press(dialog.cmdAnnehmen); }},
        {Answer::Refuse, [](frmFlood& dialog) { Press(dialog.cmdOK); }},
        {Answer::Refuse, [](frmFlood& dialog) { dialog.Close(); }},
        {Answer::Deleted, [](frmFlood& dialog) { Press(dialog.cmdLöschen); }},
    };
    for (const auto& [answer, leave] : rows) {
        std::vector<Answer> answers;
        auto* dialog = new frmFlood({"10.0.0.7", {}}, [&](Answer answer) { answers.push_back(answer); });
        dialog->Ask();
        EXPECT_TRUE(dialog->IsShown());
        EXPECT_NE(dialog->lblFlood->GetLabelText().Find(L"10.0.0.7"), wxNOT_FOUND);
        EXPECT_EQ(dialog->GetDefaultItem(), dialog->cmdOK);
        EXPECT_EQ(dialog->cmdLöschen->GetLabel(), L"Ablehnen und &löschen");
        leave(*dialog);
        EXPECT_FALSE(dialog->IsShown());
        EXPECT_TRUE(RunUntil([&] { return !answers.empty(); }));
        EXPECT_EQ(answers, std::vector<Answer>{answer});
    }
}

TEST_F(FrmFlood, NotesThatDoNotGetIntoTheBinStayAndTheUserIsTold) {
    Open();
    store.OnDeleteFlood = [](const std::vector<Note>&) { return KeepResult{KeepFailure::DiskFull}; };
    store.AddNote({.text = L"fremde"}).Untouched(true);
    ASSERT_TRUE(store.AddNoteIfKept({.text = L"eigene"}).Kept());
    ASSERT_TRUE(store.AllKept());
    AskAboutFlood(*network, {});
    Press(OpenDialog<frmFlood>()->cmdLöschen);
    EXPECT_EQ(store.CountNotes(), 2u);
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_TRUE(messages[0].starts_with(L"Papierkorb|16|Die Notizen wurden nicht gelöscht"));
    store.OnDeleteFlood = nullptr;
    AskAboutFlood(*network, {});
    Press(OpenDialog<frmFlood>()->cmdLöschen);
    ASSERT_EQ(store.CountNotes(), 1u);
    EXPECT_EQ(store.Notes()[0]->Text(), L"eigene");
}

}  // namespace
