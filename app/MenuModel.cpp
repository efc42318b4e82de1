#include "app/MenuModel.h"

namespace {

using enum MenuItem;
using enum TrayMenuEntry::Kind;

struct Entry {
    MenuItem item;
    TrayMenuEntry::Kind kind;
    const wchar_t* caption = L"";
    std::vector<Entry> submenu = {};
};

const std::vector<Entry>& Tree() {
    static const std::vector<Entry> tree = {
        {mnuNotizNeu, Command, L"Neue Notiz..."},
        {mnuNotizBearbeiten, Command, L"Notiz bearbeiten..."},
        {mnuNotizTrenn1, Separator},
        {mnuNotizLöschen, Command, L"Notiz löschen"},
        {mnuNotizTrenn2, Separator},
        {mnuNotizVordergrund, Check, L"Immer im Vordergrund"},
        {mnuMinimizeAll, Command, L"Alle Notizen minimieren"},
        {mnuUnMinimizeAll, Command, L"\"Alle Notizen minimieren\" rückgängig"},
        {mnuNotizTrenn3, Separator},
        {mnuNotizDruck, Command, L"Drucken..."},
        {mnuNotizTrenn4, Separator},
        {mnuNotizAustausch,
         Submenu,
         L"Notiz-Austausch",
         {{mnuNotizImport, Command, L"Notizen importieren..."},
          {mnuNotizExport, Command, L"Notizen exportieren..."},
          {mnuNotizSenden, Command, L"Notizen per E-Mail senden an..."},
          {mnuNotizSendOverNetwork, Command, L"Notizen im Netzwerk versenden..."},
          {mnuNotizTrenn41, Separator},
          {mnuNotizAdressbuch, Command, L"Netzwerk-Adressbuch..."}}},
        {mnuNotizTrenn5, Separator},
        {mnuNotizWindowsStart, Check, L"Beim Start von Windows laden"},
        {mnuNotizTrenn6, Separator},
        {mnuNotizHilfe, Command, L"Hilfe"},
        {mnuNotizInfo, Command, L"Info"},
        {mnuNotizTrenn7, Separator},
        {mnuNotizEnde, Command, L"Beenden"},
    };
    return tree;
}

bool IsShown(MenuItem item, const MenuSituation& situation) {
    switch (item) {
        case mnuNotizVordergrund:
        case mnuNotizLöschen:
        case mnuNotizBearbeiten:
            return situation.forNote;
        case mnuNotizDruck:
        case mnuNotizExport:
            return situation.notes > 0;
        default:
            return true;
    }
}

// Whether there is something for the item's command to do.
bool HasUse(MenuItem item, const MenuSituation& situation) {
    if (item == mnuMinimizeAll) return situation.visibleNotes > 0;
    if (item == mnuUnMinimizeAll) return situation.minimizedByCommand > 0;
    return true;
}

std::vector<TrayMenuEntry> Describe(const std::vector<Entry>& entries, const MenuSituation& situation,
                                    const std::set<MenuItem>& available) {
    std::vector<TrayMenuEntry> menu;
    for (const Entry& entry : entries) {
        if (!IsShown(entry.item, situation)) continue;
        const bool command = entry.kind == Command || entry.kind == Check;
        const bool flag = entry.item == mnuNotizVordergrund ? situation.noteForeground : situation.autostart;
        menu.push_back(
            {.id = IdOf(entry.item),
             .kind = entry.kind,
             .caption = entry.caption,
             .enabled = !command || (available.contains(entry.item) && HasUse(entry.item, situation)),
             .checked = entry.kind == Check && flag,
             .submenu = Describe(entry.submenu, situation, available)});
    }
    return menu;
}

}  // namespace

std::vector<TrayMenuEntry> DescribeMenu(const MenuSituation& situation, const std::set<MenuItem>& available) {
    return Describe(Tree(), situation, available);
}

int IdOf(MenuItem item) { return static_cast<int>(item) + 1; }

MenuItem ItemOf(int id) { return static_cast<MenuItem>(id - 1); }
