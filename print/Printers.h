#pragma once
// The printers that can be chosen, and the choice.

#include <string>
#include <vector>

#include "print/PageLayout.h"

// Where and on what to print.
struct PrinterSettings {
    std::wstring printer;  // its device name, as people see it
    PaperSize paper;       // as it is read, so wider than high in landscape format
    // All that the dialog of this printer was told, paper included, as its driver on Windows keeps it. Empty
    // before the first dialog, and on Linux.
    std::vector<unsigned char> driver = {};
};

struct PrinterList {
    std::vector<std::wstring> names;
    std::wstring standard;  // one of them, unless there are none
    std::wstring hint;      // what the user should know when the list is short; may be empty
};
