#include "app/MenuModel.h"

#include <map>

const std::vector<MenuEntry>& MenuTree() {
    using enum MenuItem;
    using enum MenuKind;
    static const std::vector<MenuEntry> tree = {
        {mnuNotizPicture, Picture},
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

MenuItemState StateOf(const MenuEntry& entry, const MenuSituation& situation,
                      const std::set<MenuItem>& available) {
    using enum MenuItem;
    MenuItemState state;
    if (entry.kind == MenuKind::Command || entry.kind == MenuKind::Check) {
        state.enabled = available.contains(entry.item);
    }
    switch (entry.item) {
        case mnuNotizVordergrund:
            state.checked = situation.forNote && situation.noteForeground;
            [[fallthrough]];
        case mnuNotizLöschen:
        case mnuNotizBearbeiten:
            state.visible = situation.forNote;
            break;
        case mnuMinimizeAll:
            state.enabled = state.enabled && situation.visibleNotes > 0;
            break;
        case mnuUnMinimizeAll:
            state.enabled = state.enabled && situation.minimizedByCommand > 0;
            break;
        case mnuNotizDruck:
        case mnuNotizExport:
            state.visible = situation.notes > 0;
            break;
        case mnuNotizWindowsStart:
            state.checked = situation.autostart;
            break;
        default:
            break;
    }
    return state;
}

std::vector<TrayMenuEntry> TrayMenuOf(const std::vector<MenuEntry>& entries, const MenuSituation& situation,
                                      const std::set<MenuItem>& available) {
    static const std::map<MenuKind, TrayMenuEntry::Kind> kinds = {
        {MenuKind::Command, TrayMenuEntry::Command},
        {MenuKind::Check, TrayMenuEntry::Check},
        {MenuKind::Separator, TrayMenuEntry::Separator},
        {MenuKind::Submenu, TrayMenuEntry::Submenu},
    };
    std::vector<TrayMenuEntry> menu;
    for (const MenuEntry& entry : entries) {
        const MenuItemState state = StateOf(entry, situation, available);
        const auto kind = kinds.find(entry.kind);
        if (!state.visible || kind == kinds.end()) continue;
        menu.push_back({.id = static_cast<int>(entry.item) + 1,
                        .kind = kind->second,
                        .caption = entry.caption,
                        .enabled = state.enabled,
                        .checked = state.checked,
                        .submenu = TrayMenuOf(entry.submenu, situation, available)});
    }
    return menu;
}

MenuItem ItemOfTrayMenu(int id) { return static_cast<MenuItem>(id - 1); }
