#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "base/ByteSource.h"
#include "exchange/ImportFile.h"

namespace {

namespace fs = std::filesystem;

// Opening one of these could wait for ever, or read without end.
TEST(SpecialFiles, AreNoExportFiles) {
    const fs::path pipe = fs::path(getenv("XDG_RUNTIME_DIR")) / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const fs::path& path : {pipe, fs::path("/dev/full"), fs::path("/dev/zero")}) {
        EXPECT_TRUE(ByteSource::OfFile(path).Failure()) << path;
        EXPECT_TRUE(ListNotes(path).empty()) << path;
        EXPECT_FALSE(NoteAt(path, 0)) << path;
    }
    fs::remove(pipe);
}

// Reading such a file may wait for ever. This one does not, and would be a note.
TEST(SpecialFiles, WithoutASizeAreEmpty) {
    const fs::path kernels = "/proc/version";
    ASSERT_TRUE(IsFile(kernels));
    EXPECT_TRUE(ListNotes(kernels).empty());
    EXPECT_FALSE(NoteAt(kernels, 0));
    const ReadNotes read = ReadNotesOf(kernels, 10, [](std::size_t) { return true; });
    EXPECT_TRUE(read.complete && read.notes.empty());
}

}  // namespace
