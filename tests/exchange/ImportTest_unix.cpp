#include <fcntl.h>
#include <unistd.h>
#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>

#include <csignal>

#include "exchange/PatientRead.h"
#include "tests/exchange/ExchangeTest.h"

namespace {

namespace fs = std::filesystem;

// Whoever opens the file meanwhile waits, as for a network that has gone, and soon asks whether to go on.
class WithoutAnswer {
  public:
    explicit WithoutAnswer(const fs::path& file) : file_(open(file.c_str(), O_RDWR)) {
        readPatience = std::chrono::milliseconds(1);
        EXPECT_EQ(fcntl(file_, F_SETLEASE, F_WRLCK), 0);
    }
    ~WithoutAnswer() {
        close(file_);
        readPatience = patience_;
    }
    WithoutAnswer(const WithoutAnswer&) = delete;
    WithoutAnswer& operator=(const WithoutAnswer&) = delete;

  private:
    const int file_;
    const std::chrono::milliseconds patience_ = readPatience;
};

TEST_F(ExchangeTest, AFileThatDoesNotAnswerIsWaitedForAsLongAsTheUserWants) {
    const auto before = std::signal(SIGIO, SIG_IGN);  // tells that somebody is kept waiting
    const fs::path path = Write(L"a.kvr", FileBytes({{.Text = L"eins"}}));
    std::optional<WithoutAnswer> silent(path);
    EXPECT_FALSE(ImportNotes(store, FileName(path)));
    Import([&](frmImport& dialog) {
        answer = MessageAnswer::No;
        dialog.txtDatei->SetValue(FileName(path));
        EXPECT_TRUE(dialog.lstNotizen->IsEmpty());
        EXPECT_FALSE(dialog.cmdOK->IsEnabled());
        EXPECT_EQ(messages, Messages{L"Importieren|52|Die Datei " + FileName(path) +
                                     L" antwortet nicht.\r\n\r\nSoll weiter auf sie gewartet werden?"});
        SetMessageObserver([&](const std::wstring&, int, const std::wstring&) {
            silent.reset();
            return MessageAnswer::Yes;
        });
        dialog.txtDatei->SetValue(FileName(path));
        EXPECT_EQ(dialog.lstNotizen->GetCount(), 1u);
        Press(dialog.cmdOK);
    });
    EXPECT_EQ(store.CountNotes(), 1u);
    std::signal(SIGIO, before);
}

}  // namespace
