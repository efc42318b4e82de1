#pragma once

// What is the matter with what the program keeps, as its icon shows it.
enum class Trouble {
    None,
    Unsaved,    // the last changes are not on the disk
    Unreadable  // what is kept cannot be read for now
};
