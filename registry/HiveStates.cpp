#include "registry/HiveStates.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "registry/HivePages.h"
#include "registry/HivePlace.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kDays = 7;
const char* const kNewest = ".stand";

// The day on which a file was written.
std::string DayOf(const fs::path& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return {};
    char day[16];
    std::tm local{};
    localtime_r(&status.st_mtime, &local);
    std::strftime(day, sizeof day, "-%Y%m%d", &local);
    return day;
}

// The last states of earlier days, the newest first.
std::vector<fs::path> Days(const fs::path& file) {
    std::vector<fs::path> days;
    const std::string start = file.filename().native() + kNewest + "-";
    std::error_code failed;
    for (fs::directory_iterator entry(file.parent_path(), failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string name = entry->path().filename().native();
        if (name.starts_with(start) &&
            name.find_first_not_of("0123456789", start.size()) == std::string::npos)
            days.push_back(entry->path());
    }
    std::sort(days.begin(), days.end(), std::greater<>());
    return days;
}

std::unique_ptr<HiveImage> GoodImage(const FoundRows& found) {
    auto image = found.whole ? found.Image() : nullptr;
    return image && image->IsIntact() ? std::move(image) : nullptr;
}

}  // namespace

KeepResult KeepState(HiveFile& opened, const fs::path& file) {
    const fs::path newest = Beside(file, kNewest), copy = Beside(newest, ".neu");
    KeepResult result = MakeEmptyFile(copy);
    if (result.Kept()) result = opened.CopyTo(copy);
    if (result.Kept()) {
        const FoundRows copied = ReadPages(copy);
        if (!copied.readable)
            result = {KeepFailure::Failed, "the copy cannot be read"};
        else if (!GoodImage(copied))
            result = {KeepFailure::Damaged, "the copy is damaged"};
    }
    std::error_code ignored;
    if (!result.Kept()) {
        fs::remove(copy, ignored);
        return result;
    }
    if (const std::string day = DayOf(newest); !day.empty() && day != DayOf(copy))
        fs::rename(newest, Beside(newest, day), ignored);
    result = PutHiveInPlace(copy, newest);
    const std::vector<fs::path> days = Days(file);
    for (std::size_t i = kDays; i < days.size(); ++i) fs::remove(days[i], ignored);
    return result;
}

std::unique_ptr<HiveImage> NewestState(const fs::path& file) {
    std::vector<fs::path> states = Days(file);
    states.insert(states.begin(), Beside(file, kNewest));
    for (const fs::path& state : states)
        if (auto image = GoodImage(ReadPages(state))) return image;
    return nullptr;
}

void MarkStateNew(const fs::path& file) { utimensat(AT_FDCWD, Beside(file, kNewest).c_str(), nullptr, 0); }

bool IsStateNew(const fs::path& file) {
    struct stat state {};
    if (stat(Beside(file, kNewest).c_str(), &state) != 0) return false;
    for (const fs::path& written : {file, Beside(file, "-wal")}) {
        struct stat status {};
        // Opening a hive makes an empty log.
        if (stat(written.c_str(), &status) != 0 || status.st_size == 0) continue;
        if (std::tie(status.st_mtim.tv_sec, status.st_mtim.tv_nsec) >
            std::tie(state.st_mtim.tv_sec, state.st_mtim.tv_nsec))
            return false;
    }
    return true;
}
