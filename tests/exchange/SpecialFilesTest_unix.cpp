#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "base/ByteSource.h"
#include "exchange/ImportFile.h"

namespace fs = std::filesystem;

// Opening one of these could wait for ever, or read without end. The last one does not, and would be a note,
// but other files without a size do.
TEST(SpecialFiles, AreNoExportFiles) {
    const fs::path pipe = fs::path(getenv("XDG_RUNTIME_DIR")) / "pipe", kernels = "/proc/version";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    ASSERT_TRUE(IsFile(kernels));
    for (const fs::path& path : {pipe, fs::path("/dev/full"), fs::path("/dev/zero"), kernels}) {
        EXPECT_EQ(!ByteSource::OfFile(path).Failure(), path == kernels) << path;
        EXPECT_TRUE(ListNotes(path).empty()) << path;
        EXPECT_FALSE(NoteAt(path, 0)) << path;
        const ReadNotes read = ReadNotesOf(path, 10, [](std::size_t) { return true; });
        EXPECT_TRUE(read.complete == (path == kernels) && read.notes.empty()) << path;
    }
    fs::remove(pipe);
}
