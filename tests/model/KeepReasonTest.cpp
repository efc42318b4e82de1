#include <gtest/gtest.h>

#include <set>

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

TEST(KeepReason, OfFilesThatAreNoHive) {
    const struct {
        std::errc error;
        KeepFailure failure;
    } table[] = {
        {std::errc::no_space_on_device, KeepFailure::DiskFull},
        {std::errc::read_only_file_system, KeepFailure::ReadOnly},
        {std::errc::permission_denied, KeepFailure::NoAccess},
        {std::errc::io_error, KeepFailure::Failed},
    };
    for (const auto& row : table) {
        const KeepResult result = FailureOf(std::make_error_code(row.error));
        EXPECT_EQ(result.failure, row.failure);
        EXPECT_FALSE(result.detail.empty());
    }
    EXPECT_TRUE(FailureOf({}).Kept());
}
