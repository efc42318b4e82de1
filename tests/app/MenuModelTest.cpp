#include <gtest/gtest.h>

#include <map>

#include "app/MenuModel.h"
#include "base/basText.h"

namespace {

using enum MenuItem;

std::vector<MenuEntry> AllEntries() {
    std::vector<MenuEntry> all;
    for (const MenuEntry& entry : MenuTree()) {
        all.push_back(entry);
        all.insert(all.end(), entry.submenu.begin(), entry.submenu.end());
    }
    return all;
}

std::set<MenuItem> Everything() {
    std::set<MenuItem> items;
    for (const MenuEntry& entry : AllEntries()) items.insert(entry.item);
    return items;
}

// How every item differs from "visible, enabled, not checked": v, e for what is missing, c for a check mark.
std::map<MenuItem, std::string> Differences(const MenuSituation& situation,
                                            const std::set<MenuItem>& available) {
    std::map<MenuItem, std::string> differences;
    for (const MenuEntry& entry : AllEntries()) {
        const MenuItemState state = StateOf(entry, situation, available);
        std::string difference;
        if (!state.visible) difference += 'v';
        if (!state.enabled) difference += 'e';
        if (state.checked) difference += 'c';
        if (!difference.empty()) differences[entry.item] = difference;
    }
    return differences;
}

TEST(MenuModel, AdaptsToTheSituation) {
    const struct {
        const char* name;
        MenuSituation situation;
        std::map<MenuItem, std::string> differences;
    } rows[] = {
        {"from the tray without notes",
         {},
         {{mnuNotizBearbeiten, "v"},
          {mnuNotizLöschen, "v"},
          {mnuNotizVordergrund, "v"},
          {mnuMinimizeAll, "e"},
          {mnuUnMinimizeAll, "e"},
          {mnuNotizDruck, "v"},
          {mnuNotizExport, "v"}}},
        {"from the tray with notes",
         {.notes = 2, .visibleNotes = 1},
         {{mnuNotizBearbeiten, "v"},
          {mnuNotizLöschen, "v"},
          {mnuNotizVordergrund, "v"},
          {mnuUnMinimizeAll, "e"}}},
        {"from a note in the foreground, with autostart",
         {.forNote = true, .noteForeground = true, .notes = 1, .visibleNotes = 1, .autostart = true},
         {{mnuNotizVordergrund, "c"}, {mnuUnMinimizeAll, "e"}, {mnuNotizWindowsStart, "c"}}},
        {"from a minimized note after minimizing all",
         {.forNote = true, .notes = 3, .minimizedByCommand = 3},
         {{mnuMinimizeAll, "e"}}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Differences(row.situation, Everything()), row.differences) << row.name;
    }
}

TEST(MenuModel, DisablesWhatHasNoCommandYet) {
    std::set<MenuItem> available = Everything();
    for (const MenuItem item : {mnuNotizDruck, mnuNotizImport, mnuNotizAdressbuch, mnuMinimizeAll}) {
        available.erase(item);
    }
    const std::map<MenuItem, std::string> expected = {
        {mnuNotizDruck, "e"}, {mnuNotizImport, "e"}, {mnuNotizAdressbuch, "e"}, {mnuMinimizeAll, "e"}};
    const MenuSituation situation{.forNote = true, .notes = 1, .visibleNotes = 1, .minimizedByCommand = 1};
    EXPECT_EQ(Differences(situation, available), expected);
}

// The way an area is told: "(" an item that cannot be chosen, "*" a mark.
std::string Told(const std::vector<TrayMenuEntry>& menu) {
    std::string told;
    for (const TrayMenuEntry& entry : menu) {
        if (entry.kind == TrayMenuEntry::Separator) told += '-';
        if (!entry.enabled) told += '(';
        if (entry.kind == TrayMenuEntry::Check) told += entry.checked ? "[*]" : "[ ]";
        told += ToUtf8(entry.caption) + '|';
        if (entry.kind == TrayMenuEntry::Submenu) told += "> " + Told(entry.submenu) + "< ";
    }
    return told;
}

// All but its picture, in its order.
TEST(MenuModel, IsToldToAreasAsItWouldBeShown) {
    EXPECT_EQ(MenuTree()[0].kind, MenuKind::Picture);
    std::set<MenuItem> available = Everything();
    available.erase(mnuNotizSenden);
    EXPECT_EQ(
        Told(TrayMenuOf(MenuTree(), {.autostart = true}, available)),
        "Neue Notiz...|-|-|(Alle Notizen minimieren|(\"Alle Notizen minimieren\" rückgängig|-|-|"
        "Notiz-Austausch|> Notizen importieren...|(Notizen per E-Mail senden an...|Notizen im Netzwerk "
        "versenden...|-|Netzwerk-Adressbuch...|< -|[*]Beim Start von Windows laden|-|Hilfe|Info|-|Beenden|");
    const MenuSituation forNote{.forNote = true, .noteForeground = true, .notes = 1, .minimizedByCommand = 1};
    const std::vector<TrayMenuEntry> menu = TrayMenuOf(MenuTree(), forNote, Everything());
    EXPECT_EQ(
        Told(menu),
        "Neue Notiz...|Notiz bearbeiten...|-|Notiz löschen|-|[*]Immer im Vordergrund|(Alle Notizen "
        "minimieren|\"Alle Notizen minimieren\" rückgängig|-|Drucken...|-|Notiz-Austausch|> Notizen "
        "importieren...|Notizen exportieren...|Notizen per E-Mail senden an...|Notizen im Netzwerk "
        "versenden...|-|Netzwerk-Adressbuch...|< -|[ ]Beim Start von Windows laden|-|Hilfe|Info|-|Beenden|");
    EXPECT_EQ(ItemOfTrayMenu(menu[0].id), mnuNotizNeu);
    EXPECT_EQ(ItemOfTrayMenu(menu.back().id), mnuNotizEnde);
    EXPECT_GT(menu[0].id, 0);
}

}  // namespace
