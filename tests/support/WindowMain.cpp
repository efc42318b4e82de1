// The tests run after wxWidgets has started, as the program's code does.
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/init.h>

#include "exchange/PatientRead.h"
#include "tests/support/Support.h"

namespace {

class TestApp : public wxApp {
  public:
    bool OnInit() override {
        SetExitOnFrameDelete(false);
        return true;
    }
    // A failed assertion of wxWidgets would wait on a dialog; here it fails the test.
    void OnAssertFailure(const wxChar* file, int line, const wxChar*, const wxChar* condition,
                         const wxChar* message) override {
        ADD_FAILURE_AT(wxString(file).utf8_str(), line)
            << wxString(condition).utf8_str() << ": " << wxString(message ? message : L"").utf8_str();
    }
};

}  // namespace

wxIMPLEMENT_APP_NO_MAIN(TestApp);

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    PrivateFolders folders;
    // No file here is one that does not answer, however busy the machine is.
    readPatience = std::chrono::hours(1);
    if (!wxEntryStart(argc, argv) || !wxTheApp->CallOnInit()) return 1;
    const int result = RUN_ALL_TESTS();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return result;
}
