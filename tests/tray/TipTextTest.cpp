#include <gtest/gtest.h>

#include "tray/TipText.h"

TEST(TipText, ShowsEveryAmpersandAndCutsNone) {
    const struct {
        const wchar_t *tip, *marked;
        std::size_t most;
    } table[] = {
        {L"", L"", 10},        {L"Käse", L"Käse", 10}, {L"Käse", L"Kä", 2}, {L"A & B", L"A &&& B", 10},
        {L"&&", L"&&&&&&", 6}, {L"&&", L"&&&", 5},     {L"A&", L"A", 3},
    };
    for (const auto& row : table) EXPECT_EQ(WithMarkedAmpersands(row.tip, row.most), row.marked) << row.tip;
}
