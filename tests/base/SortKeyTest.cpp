#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "base/SortKey.h"

TEST(SortKey, IsTheOrderOfAGermanIndex) {
    const std::vector<std::wstring> sorted = {L"",      L"10.0.0.2", L"ärger", L"Bar", L"Bär",
                                              L"BAR b", L"Masse",    L"Maße",  L"o",   L"Ö",
                                              L"œuvre", L"Zeta",     L"Žižka", L"Ω",   L"Я"};
    std::vector<std::wstring> texts(sorted.rbegin(), sorted.rend());
    std::ranges::sort(texts, {}, SortKey);
    EXPECT_EQ(texts, sorted);
    EXPECT_EQ(SortKey(L"büro"), SortKey(L"BÜRO"));
    EXPECT_LT(SortKey(L"A\u0308rger"), SortKey(L"As"));
}
