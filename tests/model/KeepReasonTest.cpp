#include <gtest/gtest.h>

#include <set>

#include "model/KeepReason.h"

TEST(KeepReason, EveryFailureHasItsOwnGermanSentences) {
    std::set<std::wstring> texts;
    for (int kind = 1; kind <= static_cast<int>(KeepFailure::Failed); ++kind) {
        const auto failure = static_cast<KeepFailure>(kind);
        const std::wstring text = ReasonText({failure});
        EXPECT_TRUE(text.ends_with(L".")) << kind;
        EXPECT_EQ(text.find(L'%'), text.npos) << kind;
        EXPECT_TRUE(texts.insert(text).second) << kind;
        // Only what nobody expected is worth a number.
        const std::wstring number = failure == KeepFailure::Failed ? L" Seine Nummer ist 28." : L"";
        EXPECT_EQ(ReasonText({failure, "No space left on device", 28}), text + number);
    }
    EXPECT_EQ(ReasonText({KeepFailure::None, "not an error"}), L"");
}

TEST(KeepReason, SaysWhichFileHasToBeMended) {
    for (const KeepFailure failure : {KeepFailure::NoAccess, KeepFailure::NoFile, KeepFailure::DeadLink}) {
        KeepResult result{failure};
        result.file = L"/home/jemand/registry.sqlite";
        const std::wstring text = ReasonText(result, L"die Datei");
        EXPECT_NE(text.find(L"die Datei"), text.npos);
        EXPECT_TRUE(text.ends_with(L".\r\nEs geht um:\r\n" + result.file));
    }
}

TEST(KeepReason, OfAFileThatTheUserHasNamed) {
    const std::pair<std::errc, std::wstring> table[] = {
        {std::errc::no_space_on_device, L"Auf dem Laufwerk ist kein Platz mehr frei."},
        {std::errc::file_too_large, L"Auf dem Laufwerk ist kein Platz mehr frei."},
        {std::errc::read_only_file_system, L"Das Laufwerk lässt keine Änderungen zu."},
        {std::errc::permission_denied, L"Sie dürfen diese Datei oder ihren Ordner nicht ändern."},
        {std::errc::io_error, L"Das Laufwerk hat einen Fehler gemeldet."},
        {std::errc::no_such_file_or_directory, L""},
        {std::errc::is_a_directory, L""},
    };
    for (const auto& [error, text] : table) EXPECT_EQ(FileReasonText(std::make_error_code(error)), text);
    EXPECT_EQ(FileReasonText({}), L"");
    EXPECT_TRUE(FailureOf({}).Kept());
}
