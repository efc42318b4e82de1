#include <gtest/gtest.h>

#include "app/MenuModel.h"
#include "base/Text.h"

namespace {

using enum MenuItem;

// The menu in a line: "(" an item that cannot be chosen, "*" a mark.
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

TEST(MenuModel, AdaptsToTheSituation) {
    std::set<MenuItem> all;
    for (int item = 0; item <= static_cast<int>(mnuNotizEnde); ++item) all.insert(MenuItem(item));
    std::set<MenuItem> fewer = all;
    for (const MenuItem item : {mnuMinimizeAll, mnuNotizDruck, mnuNotizSenden}) fewer.erase(item);
    const struct {
        const char* name;
        MenuSituation situation;
        const std::set<MenuItem>& available;
        const char* told;
    } rows[] = {
        {"from the icon without notes, with autostart",
         {.autostart = true},
         all,
         "Neue Notiz...|-|-|(Alle Notizen minimieren|(\"Alle Notizen minimieren\" rückgängig|-|-|"
         "Notiz-Austausch|> Notizen importieren...|Notizen per E-Mail senden an...|Notizen im Netzwerk "
         "versenden...|-|Netzwerk-Adressbuch...|< -|[*]Beim Start von Windows laden|-|Hilfe|Info|-|Beenden|"},
        {"from the icon with notes",
         {.notes = 2, .visibleNotes = 1},
         all,
         "Neue Notiz...|-|-|Alle Notizen minimieren|(\"Alle Notizen minimieren\" rückgängig|-|Drucken...|-|"
         "Notiz-Austausch|> Notizen importieren...|Notizen exportieren...|Notizen per E-Mail senden an...|"
         "Notizen im Netzwerk versenden...|-|Netzwerk-Adressbuch...|< -|[ ]Beim Start von Windows laden|-|"
         "Hilfe|Info|-|Beenden|"},
        {"from a note in the foreground after minimizing all, without some commands",
         {.forNote = true, .noteForeground = true, .notes = 1, .visibleNotes = 1, .minimizedByCommand = 1},
         fewer,
         "Neue Notiz...|Notiz bearbeiten...|-|Notiz löschen|-|[*]Immer im Vordergrund|(Alle Notizen "
         "minimieren|\"Alle Notizen minimieren\" rückgängig|-|(Drucken...|-|Notiz-Austausch|> Notizen "
         "importieren...|Notizen exportieren...|(Notizen per E-Mail senden an...|Notizen im Netzwerk "
         "versenden...|-|Netzwerk-Adressbuch...|< -|[ ]Beim Start von Windows laden|-|Hilfe|Info|-|Beenden|"},
    };
    for (const auto& row : rows) {
        const std::vector<TrayMenuEntry> menu = DescribeMenu(row.situation, row.available);
        EXPECT_EQ(Told(menu), row.told) << row.name;
        EXPECT_GT(menu.front().id, 0);
        EXPECT_EQ(ItemOf(menu.front().id), mnuNotizNeu);
        EXPECT_EQ(ItemOf(menu.back().id), mnuNotizEnde);
    }
}

}  // namespace
