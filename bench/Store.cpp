#include "bench/Store.h"

#include <stdlib.h>
#include <unistd.h>

#include <stdexcept>

#include "bench/Process.h"
#include "model/StoredImage.h"

namespace fs = std::filesystem;

User::User(const std::vector<Note>& notes, const User* like) {
    std::string name = (fs::temp_directory_path() / "kivora-bench-XXXXXX").string();
    home_ = mkdtemp(name.data());
    if (like) fs::copy(like->home_, home_, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    for (const char* variable :
         {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        setenv(variable, home_.c_str(), 1);
    fs::permissions(home_, fs::perms::owner_all);
    // In a process of its own, which does not keep the hive open.
    Process writer([&] {
        std::vector<const Note*> all;
        for (const Note& note : notes) all.push_back(&note);
        return WriteStoredImage(false, all, {}).Kept() ? 0 : 1;
    });
    if (writer.Wait() != 0) throw std::runtime_error("the notes cannot be written");
}

User::~User() {
    std::error_code ignored;
    fs::remove_all(home_, ignored);
}
