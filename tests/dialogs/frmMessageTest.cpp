#include <wx/display.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/frmMessage.h"
#include "res/Resources.h"
#include "tests/support/Dialogs.h"

namespace {

std::wstring Words(int count) {
    std::wstring words;
    for (int i = 0; i < count; ++i) words += L"Wort" + std::to_wstring(i) + (i % 7 == 6 ? L"\r\n" : L" ");
    return words;
}

std::wstring ShownText(const frmMessage& box) {
    for (const wxWindow* child : box.GetChildren()) {
        if (dynamic_cast<const wxStaticText*>(child))
            return dynamic_cast<const wxStaticText*>(child)->GetLabelText().ToStdWstring();
    }
    return {};
}

}  // namespace

TEST(Message, FitsOnTheScreenWhateverItSays) {
    const wxSize screen = wxDisplay(0u).GetClientArea().GetSize();
    const struct {
        const char* name;
        std::wstring text;
        bool whole;
    } rows[] = {
        {"a path", L"Die Datei /" + std::wstring(100, L'W') + L".kvr fehlt.", true},
        {"a path as long as can be", L"Die Datei /" + std::wstring(4095, L'W') + L".kvr fehlt.", false},
        {"a few lines", Words(100), true},
        {"a whole note", Words(100'000), false},
        {"nothing but line ends", std::wstring(100'000, L'\n'), false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto* box = new frmMessage(row.text, kCritical, L"");
        EXPECT_LE(box->GetSize().x, 60 * box->GetCharWidth() + 250);
        EXPECT_LT(box->GetSize().y, screen.y - 2 * box->GetCharHeight());
        EXPECT_EQ(ShownText(*box).find(L'…') == std::wstring::npos, row.whole);
        box->Destroy();
    }
}

TEST(Message, HasThePictureOfItsKindAndIsAnswered) {
    const std::pair<int, int> rows[] = {{kCritical, kCriticalPicture},
                                        {kExclamation | kYesNo, kWarningPicture},
                                        {kInformation, kInformationPicture}};
    for (const auto& [flags, picture] : rows) {
        auto* box = new frmMessage(L"Text", flags, L"Titel");
        for (const wxWindow* child : box->GetChildren()) {
            if (const auto* shown = dynamic_cast<const wxStaticBitmap*>(child)) {
                EXPECT_TRUE(shown->GetBitmap().IsSameAs(LoadPicture(picture).GetBitmapFor(box))) << flags;
            }
        }
        box->Destroy();
    }
    for (const auto& [button, caption, answer] :
         {std::tuple(wxID_OK, L"&Ja", MessageAnswer::Yes), {wxID_CANCEL, L"&Nein", MessageAnswer::No}}) {
        const WhenShown<frmMessage> user([&](frmMessage& box) {
            EXPECT_EQ(box.FindWindow(button)->GetLabel(), caption);
            Press(box.FindWindow(button));
        });
        EXPECT_EQ(ShowMessage(L"Text", kExclamation | kYesNo, L"Titel"), answer);
    }
}

// Also where nothing else of the program is on the screen.
TEST(OneDialog, MayBeOpenedAgainAtOnce) {
    OneDialog one;
    {
        const OneDialog::Opened<frmMessage> box(one, L"Text", kInformation, L"Titel");
        box->Show();
        EXPECT_TRUE(one.BroughtForward());
    }
    EXPECT_FALSE(one.BroughtForward());
}
