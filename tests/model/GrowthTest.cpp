// What is done with many notes costs so much a note, however many there are.
#include <gtest/gtest.h>

#include "exchange/KeptFile.h"
#include "model/NoteSearch.h"
#include "model/StoredImage.h"
#include "tests/support/AskedMemory.h"

namespace {

using Notes = std::vector<Note>;

Notes ManyNotes(std::size_t count) {
    Notes notes(count);
    for (std::size_t i = 0; i < count; ++i)
        notes[i] = {.text = L"Milch und Brot holen, " + std::to_wstring(i), .creationTime = L"heute"};
    return notes;
}

void Save(const Notes& notes) {
    std::vector<const Note*> pointers;
    pointers.reserve(notes.size());
    for (const Note& note : notes) pointers.push_back(&note);
    EXPECT_TRUE(WriteStoredImage(false, pointers, {}).Kept());
}

NoteSearch search;

void Search(const Notes& notes) {
    std::vector<SearchedNote> searched;
    searched.reserve(notes.size());
    for (const Note& note : notes) searched.push_back({std::to_wstring(searched.size()), L"", note});
    search.Search(std::move(searched));
}

void SearchWithOneMore(Notes notes) {
    notes.insert(notes.begin(), {.text = L"neu"});
    Search(notes);
}

}  // namespace

TEST(Growth, FiveTimesAsManyNotesCostFiveTimesAsMuch) {
    const struct {
        const char* name;
        std::function<void(const Notes&)> prepare, work;
    } works[] = {
        {"a save of all", {}, Save},
        {"a save with nothing new", Save, Save},
        {"a load", Save, [](const Notes& notes) { EXPECT_EQ(ReadStoredImage().notes.size(), notes.size()); }},
        {"what is searched", {}, Search},
        {"one more to be searched", Search, SearchWithOneMore},
        {"a kept file", {}, [](const Notes& notes) { KeptFileBytes(notes); }},
    };
    for (const auto& each : works) {
        const auto cost = [&each](std::size_t count) {
            Save({});
            Search({});
            const Notes notes = ManyNotes(count);
            if (each.prepare) each.prepare(notes);
            const std::size_t before = BytesAskedFor();
            each.work(notes);
            return BytesAskedFor() - before;
        };
        EXPECT_LT(cost(5000), 6 * cost(1000)) << each.name;
    }
    Save({});
}
