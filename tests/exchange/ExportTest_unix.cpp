#include <wx/button.h>
#include <wx/textctrl.h>

#include "model/KeepReason.h"
#include "tests/exchange/ExchangeTest.h"
#include "tests/support/SmallDisk_unix.h"

namespace {

namespace fs = std::filesystem;

TEST_F(ExchangeTest, AFullDiskLeavesTheFileAndIsTold) {
    Add({.Text = std::wstring(5000, L'x')});
    const fs::path path = Write(L"alt.kvr", "alt");
    Export([&](frmExport& dialog) {
        dialog.txtPfad->SetValue(FileName(path));
        const SmallDisk disk(1000);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(Content(path), "alt");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    ASSERT_EQ(messages.size(), 2u) << "the question and the failure";
    EXPECT_TRUE(messages[1].starts_with(L"Fehler|16|Beim Exportieren der Notiz(en)"));
    EXPECT_NE(messages[1].find(L"\r\n\r\nAuf dem Laufwerk ist kein Platz mehr frei."), std::wstring::npos);
}

}  // namespace
