// Reads and writes the image of notes, address book and settings where the program has it:
//   kivora_image read FILE
//   kivora_image write FILE
#include <cstdio>
#include <cstring>

#include "tests/registry/RegistryImage.h"
#include "tests/support/Files.h"

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "read") == 0) {
        std::ofstream file(argv[2], std::ios::binary);
        return file << ReadImage() && file.flush() ? 0 : 1;
    }
    if (argc == 3 && std::strcmp(argv[1], "write") == 0) {
        return std::filesystem::exists(argv[2]) && WriteImage(Content(argv[2])) ? 0 : 1;
    }
    std::fputs("kivora_image read|write FILE\n", stderr);
    return 2;
}
