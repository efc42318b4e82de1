#pragma once
// The program's menu as data: which items there are, in which order, and how each of them looks in a given
// situation. Whoever shows the menu asks here, be it the program or a notification area that shows the menus
// of its icons itself; what a command does is not known here.

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

// The items that show in a situation, in their order and without the picture, which stands above them. A
// command that is not among the available ones is there but disabled.
std::vector<TrayMenuEntry> DescribeMenu(const MenuSituation& situation, const std::set<MenuItem>& available);

// The number of an item in that description, above 0, and the item of a number.
int IdOf(MenuItem item);
MenuItem ItemOf(int id);
