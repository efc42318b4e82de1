#include <gtest/gtest.h>

#include <set>

#include "base/Text.h"
#include "model/KeepReason.h"

TEST(KeepReason, EveryFailureHasItsOwnSentences) {
    std::set<std::wstring> texts;
    for (int kind = 1; kind <= static_cast<int>(KeepFailure::Failed); ++kind) {
        const auto failure = static_cast<KeepFailure>(kind);
        const std::wstring text = ReasonText({failure});
        EXPECT_TRUE(text.ends_with(L".")) << kind;
        EXPECT_TRUE(texts.insert(text).second) << kind;
        EXPECT_EQ(ReasonText({failure, "disk I/O error"}), text + L"\r\n(disk I/O error)");
    }
    EXPECT_EQ(ReasonText({KeepFailure::None, "not an error"}), L"");
}

TEST(KeepReason, OfAFileThatTheUserHasNamed) {
    const struct {
        std::errc error;
        std::wstring text;
    } table[] = {
        {std::errc::no_space_on_device, L"Auf dem Laufwerk ist kein Platz mehr frei."},
        {std::errc::file_too_large, L"Auf dem Laufwerk ist kein Platz mehr frei."},
        {std::errc::read_only_file_system, L"Das Laufwerk lässt keine Änderungen zu."},
        {std::errc::permission_denied, L"Sie dürfen diese Datei oder ihren Ordner nicht ändern."},
        {std::errc::io_error, L"Das Laufwerk hat einen Fehler gemeldet."},
        {std::errc::no_such_file_or_directory, L""},
        {std::errc::is_a_directory, L""},
    };
    for (const auto& row : table) {
        const std::error_code error = std::make_error_code(row.error);
        const std::wstring detail = L"\r\n(" + FromUtf8(error.message()) + L")";
        EXPECT_EQ(FileReasonText(error), row.text.empty() ? L"" : row.text + detail);
    }
    EXPECT_EQ(FileReasonText({}), L"");
    EXPECT_TRUE(FailureOf({}).Kept());
}
