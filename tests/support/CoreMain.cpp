#include <gtest/gtest.h>

#include "tests/support/Support.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    PrivateFolders folders;
    return RUN_ALL_TESTS();
}
