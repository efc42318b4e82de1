#include <gtest/gtest.h>

#include "dialogs/DialogPlace.h"

TEST(DialogPlace, IsBesideTheNoteAndOnItsScreen) {
    const wxRect area(1000, 20, 1000, 780);  // of the second screen
    const struct {
        const char* name;
        std::optional<wxRect> beside;
        wxPoint place;
    } rows[] = {
        {"alone", std::nullopt, {1450, 385}},
        {"at its right", wxRect(1100, 100, 200, 200), {1309, 100}},
        {"at its left", wxRect(1800, 100, 150, 100), {1690, 100}},
        {"below a wide one", wxRect(1050, 100, 900, 200), {1050, 309}},
        {"above a wide one", wxRect(1050, 500, 900, 290), {1050, 440}},
        {"over one that leaves no room", area, {1000, 20}},
        {"higher than one in the lowest corner", wxRect(1100, 790, 200, 200), {1309, 749}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(DialogPlace({100, 50}, area, row.beside, 10), row.place) << row.name;
}
