#pragma once
// The program's menu as data: which items there are, in which order, and how each of them looks in a given
// situation. Whoever shows the menu asks here; what a command does is not known here.

#include <cstddef>
#include <set>
#include <vector>

#include "tray/TrayMenu.h"

enum class MenuItem {
    mnuNotizPicture,
    mnuNotizNeu,
    mnuNotizBearbeiten,
    mnuNotizTrenn1,
    mnuNotizLöschen,
    mnuNotizTrenn2,
    mnuNotizVordergrund,
    mnuMinimizeAll,
    mnuUnMinimizeAll,
    mnuNotizTrenn3,
    mnuNotizDruck,
    mnuNotizTrenn4,
    mnuNotizAustausch,
    mnuNotizImport,
    mnuNotizExport,
    mnuNotizSenden,
    mnuNotizSendOverNetwork,
    mnuNotizTrenn41,
    mnuNotizAdressbuch,
    mnuNotizTrenn5,
    mnuNotizWindowsStart,
    mnuNotizTrenn6,
    mnuNotizHilfe,
    mnuNotizInfo,
    mnuNotizTrenn7,
    mnuNotizEnde,
};

enum class MenuKind { Picture, Command, Check, Separator, Submenu };

struct MenuEntry {
    MenuItem item;
    MenuKind kind;
    const wchar_t* caption = L"";
    std::vector<MenuEntry> submenu = {};
};

// The tree in the order in which it is shown.
const std::vector<MenuEntry>& MenuTree();

constexpr int kMenuPictureHeight = 34;  // pixels

// What the menu depends on.
struct MenuSituation {
    bool forNote = false;         // opened for a note, not from the program's icon
    bool noteForeground = false;  // that note's flag
    std::size_t notes = 0;
    std::size_t visibleNotes = 0;
    std::size_t minimizedByCommand = 0;
    bool autostart = false;
};

struct MenuItemState {
    bool visible = true;
    bool enabled = true;
    bool checked = false;
    bool operator==(const MenuItemState&) const = default;
};

// The state of an item. A command that is not among the available ones is there but disabled.
MenuItemState StateOf(const MenuEntry& entry, const MenuSituation& situation,
                      const std::set<MenuItem>& available);

// The menu in a situation, for notification areas that show it themselves. The picture is left out: they show
// captions only.
std::vector<TrayMenuEntry> TrayMenuOf(const std::vector<MenuEntry>& entries, const MenuSituation& situation,
                                      const std::set<MenuItem>& available);
// The item behind an id of that menu.
MenuItem ItemOfTrayMenu(int id);
