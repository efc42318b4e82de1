#include "tests/faults/Disk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <random>

#include "tests/support/Files.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kSector = 512;

fs::path PathOf(int file) { return "/proc/self/fd/" + std::to_string(file); }

}  // namespace

Disk::Disk(fs::path folder) : folder_(std::move(folder)) {
    for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
        const ino_t number = names_[entry] = NumberOf(entry);
        if (number != 0) files_[number].synced = Content(entry);
    }
}

Disk::~Disk() {
    for (const auto& [number, file] : files_) close(file.held);
}

ino_t Disk::NumberOf(const fs::path& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    if (S_ISDIR(status.st_mode)) return 0;
    File& file = files_[status.st_ino];
    if (file.held < 0) file.held = open(path.c_str(), O_PATH | O_CLOEXEC);
    return status.st_ino;
}

void Disk::TakeNames(const fs::path& folder, Names& names) {
    std::erase_if(names, [&](const auto& each) { return each.first.parent_path() == folder; });
    std::error_code gone;
    for (const auto& entry : fs::directory_iterator(folder, gone)) names[entry] = NumberOf(entry);
}

void Disk::Apply(const FileCall& call) {
    const bool concerns = call.kind == CallKind::Open || call.kind == CallKind::Sync;
    if (!concerns || !call.succeeded) return;
    const fs::path path = PathOf(call.file);
    const ino_t number = NumberOf(path);
    if (call.kind == CallKind::Open) return;
    if (number != 0)
        files_[number].synced = Content(path);
    else
        TakeNames(fs::read_symlink(path), names_);
}

void Disk::PowerCut(std::uint32_t seed) {
    std::mt19937 random(seed);
    const auto lucky = [&] { return seed != 0 && random() % 2 == 0; };

    std::vector<fs::path> folders = {folder_};
    for (const auto& entry : fs::recursive_directory_iterator(folder_))
        if (entry.is_directory()) folders.push_back(entry);
    for (const fs::path& folder : folders)
        if (lucky()) TakeNames(folder, names_);
    for (auto& [number, file] : files_) {
        const std::string now = Content(PathOf(file.held));
        if (lucky()) file.synced.resize(now.size());
        const std::size_t both = std::min(file.synced.size(), now.size());
        for (std::size_t at = 0; at < both; at += kSector)
            if (lucky())
                std::copy_n(now.begin() + at, std::min(kSector, both - at), file.synced.begin() + at);
    }

    fs::remove_all(folder_);
    fs::create_directories(folder_);
    for (const auto& [path, number] : names_) {
        if (!fs::exists(path.parent_path())) continue;  // lost with its folder
        if (number == 0)
            fs::create_directory(path);
        else
            std::ofstream(path, std::ios::binary) << files_[number].synced;
        fs::permissions(path, number == 0 ? fs::perms(0700) : fs::perms(0600));
    }
}
