#include <cstdlib>
#include <stdexcept>

#include "tests/support/Support.h"

PrivateFolders::PrivateFolders() {
    std::string name = (std::filesystem::temp_directory_path() / "kivora-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    root_ = name;
    for (const char* folder : {"data", "run", "config", "tmp"}) {
        std::filesystem::create_directory(root_ / folder);
        std::filesystem::permissions(root_ / folder, std::filesystem::perms::owner_all);
    }
    setenv("GSETTINGS_BACKEND", "memory", 1);  // file dialogs remember their size
    setenv("XDG_DATA_HOME", (root_ / "data").c_str(), 1);
    setenv("XDG_RUNTIME_DIR", (root_ / "run").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (root_ / "config").c_str(), 1);
    setenv("TMPDIR", (root_ / "tmp").c_str(), 1);
}

PrivateFolders::~PrivateFolders() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

std::wstring FileWithoutRoom() { return L"/dev/full"; }

bool IsForTheUserOnly(const std::filesystem::path& path) {
    return std::filesystem::status(path).permissions() == std::filesystem::perms::owner_all;
}

int CountHandles() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}
