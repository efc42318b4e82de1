// How the names of files come into the dialogs of export and import: by the platform's file dialog, or
// dropped.
#include <wx/button.h>
#include <wx/dnd.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include "exchange/ExportPath.h"
#include "tests/exchange/ExchangeTest.h"
#include "tests/exchange/FileDialogOnScreen.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

TEST_F(ExchangeTest, FileDialogsGiveNames) {
    Add({.Text = L"eins"});
    const fs::path path = Write(L"quelle ü.kvr", FileBytes(SampleNotes()));
    Import([&](frmImport& dialog) {
        auto* choose = ChooseOnScreen([&] {
            EXPECT_EQ(FileDialogOnScreen::Find()->Title(), L"Kivora-Exportdatei öffnen...");
            return path;
        });
        Press(dialog.cmdDurchsuchen);
        choose->End();
        EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
        EXPECT_EQ(dialog.lstNotizen->GetCount(), 4u);
        bool cancelled = false;
        auto* cancel = Repeated::Every(50ms, [&] {
            const auto chooser = FileDialogOnScreen::Find();
            if (!chooser || cancelled) return false;
            EXPECT_TRUE(fs::equivalent(chooser->Folder(), folder)) << "not the folder used last";
            chooser->Cancel();
            cancelled = true;
            return false;
        });
        Press(dialog.cmdDurchsuchen);
        cancel->End();
        EXPECT_TRUE(cancelled);
        EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
        Press(dialog.cmdAbbrechen);
    });
}

TEST_F(ExchangeTest, WriteProtectedFilesAreNotChosen) {
    Add({.Text = L"eins"});
    const fs::path path = Write(L"fest.kvr", "");
    fs::permissions(path, fs::perms::owner_read);
    if (!IsOnlyWriteProtected(path)) {
        fs::permissions(path, fs::perms::owner_all);
        GTEST_SKIP() << "Wine marks every file as one to be archived, too";
    }
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(L"vorher");
        // The protected one until that is complained of, then another.
        auto* choose = ChooseOnScreen([&] { return messages.empty() ? path : folder / "neu.kvr"; });
        Press(dialog.cmdSearch);
        choose->End();
        EXPECT_EQ(dialog.txtPfad->GetValue(), Name(L"neu.kvr"));
        Press(dialog.cmdAbbrechen);
    });
    EXPECT_EQ(messages, Messages{L"Schreibgeschützte Datei|16|Sie haben eine existierende Datei gewählt, "
                                 L"welche als schreibgeschützt markiert ist.\r\nWählen Sie bitte einen "
                                 L"anderen Dateinamen."});
    fs::permissions(path, fs::perms::owner_all);
}

TEST_F(ExchangeTest, ADroppedFileFillsTheBox) {
    const fs::path path = Write(L"gezogen.kvr", FileBytes(SampleNotes()));
    Import([&](frmImport& dialog) {
        for (wxWindow* window :
             {static_cast<wxWindow*>(&dialog), static_cast<wxWindow*>(dialog.txtDatei),
              static_cast<wxWindow*>(dialog.lstNotizen), static_cast<wxWindow*>(dialog.txtNotiz)}) {
            dialog.txtDatei->SetValue(L"");
            auto* target = dynamic_cast<wxFileDropTarget*>(window->GetDropTarget());
            ASSERT_TRUE(target);
            wxArrayString names;
            names.push_back(FileName(path));
            EXPECT_TRUE(target->OnDropFiles(0, 0, names));
            EXPECT_EQ(dialog.txtDatei->GetValue(), FileName(path));
            EXPECT_EQ(dialog.lstNotizen->GetCount(), 4u);
        }
        Press(dialog.cmdAbbrechen);
    });
}

}  // namespace
