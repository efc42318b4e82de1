#pragma once
// The bin as whoever shows it or takes notes out of it sees it. Where and how it is kept is not known here.

#include <cstddef>
#include <string>
#include <vector>

#include "model/Note.h"
#include "registry/KeepResult.h"

// A note that was deleted. Those that were deleted together lie in one file.
struct BinnedNote {
    std::wstring file;
    std::wstring deleted;  // when, as people read it
    Note note;

    bool operator==(const BinnedNote&) const = default;
};

class NoteBin {
  public:
    virtual ~NoteBin() = default;

    struct Content {
        std::vector<BinnedNote> notes;  // what was deleted last comes first
        std::size_t unreadable = 0;     // files of which nothing could be read
        KeepResult read = {};  // why there is nothing, when the bin itself could not be looked through
    };
    virtual Content Read() const = 0;

    // Takes the notes out. One whose file could not be changed does not come up any more as long as the
    // program runs, and the result says why.
    virtual KeepResult Remove(const std::vector<BinnedNote>& notes) = 0;
};
