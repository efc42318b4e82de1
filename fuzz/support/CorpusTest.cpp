// Every target holds for the files of its corpus: the seeds, and all that once broke a promise.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzz/support/FuzzTarget.h"

TEST(Corpus, BreaksNoPromise) {
    for (const FuzzTarget* target : FuzzTargets()) {
        int files = 0;
        for (const auto& file :
             std::filesystem::directory_iterator(std::filesystem::path(FUZZ_CORPUS) / target->name)) {
            std::ifstream in(file.path(), std::ios::binary);
            const std::string bytes(std::istreambuf_iterator<char>(in), {});
            FuzzInput input(bytes);
            EXPECT_NO_THROW(target->run(input)) << file.path();
            ++files;
        }
        EXPECT_GT(files, 0) << target->name;
    }
}
