#include <wx/button.h>
#include <wx/textctrl.h>

#include "app/frmInfo.h"
#include "notes/basNotes.h"
#include "notes/frmProperties.h"
#include "tests/notes/StoreTest.h"
#include "tests/support/Stacking.h"

// Nobody waits for it, so it neither waits itself for a dialog that was opened over it, nor keeps one
// waiting.
TEST_F(StoreTest, InfoGoesAtOnceWhateverElseIsOpen) {
    frmInfo::Open();
    Run<frmProperties>([this] { NewNote(store); },
                       [](frmProperties& dialog) {
                           frmInfo* info = OpenDialog<frmInfo>();
                           ASSERT_TRUE(info);
                           ASSERT_TRUE(RunUntil([&] { return IsOnScreen(*info); }));
                           frmInfo::Open();
                           EXPECT_EQ(OpenDialog<frmInfo>(), info);  // there is only one
                           Press(info->FindWindow(wxID_OK));
                           EXPECT_FALSE(info->IsShown());
                           EXPECT_TRUE(dialog.IsShown());
                           frmInfo::Open();
                           dialog.txtMessage->SetValue(L"Milch");
                           Press(dialog.cmdOK);
                       });
    EXPECT_EQ(store.CountNotes(), 1u);
    OpenDialog<frmInfo>()->Close();
    EXPECT_FALSE(OpenDialog<frmInfo>());
}
