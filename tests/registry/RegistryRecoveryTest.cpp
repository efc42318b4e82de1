// Damaged hives: every change is noticed, the notes come back, and what was found is set aside as it was.
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <set>

#include "base/FileName.h"
#include "base/Text.h"
#include "model/StoredImage.h"
#include "registry/RegistryHealth.h"
#include "registry/RegistryHive.h"
#include "tests/registry/HiveFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr int kNotes = 50;

// All faults when KIVORA_FAULTS is "full", else a sample.
bool AllFaults() {
    const char* const faults = getenv("KIVORA_FAULTS");
    return faults && std::string(faults) == "full";
}

std::wstring TextOf(int note) {
    return L"Notiz " + std::to_wstring(note) + L": " +
           std::wstring(static_cast<std::size_t>(40 + note * note % 1500),
                        static_cast<wchar_t>(L'a' + note % 26));
}

KeepResult SaveNotes(const wchar_t* end = L"") {
    std::vector<Note> notes;
    for (int i = 0; i < kNotes; ++i)
        notes.push_back(
            {.text = TextOf(i) + end, .creationTime = L"22.11.2026 10:00", .place = {1000.0 + i, 1000}});
    std::vector<const Note*> all;
    for (const Note& note : notes) all.push_back(&note);
    return WriteStoredImage(true, all, {});
}

std::multiset<std::wstring> Texts() {
    std::multiset<std::wstring> texts;
    for (const StoredNote& each : ReadStoredImage().notes) texts.insert(each.note.text);
    return texts;
}

int CountRight() {
    const std::multiset<std::wstring> texts = Texts();
    int right = 0;
    for (int i = 0; i < kNotes; ++i) right += texts.contains(TextOf(i));
    return right;
}

struct Outcome {
    int runs = 0, right = 0, worst = kNotes;

    double Right() const { return static_cast<double>(right) / runs; }
};

// Starts on a hive with these bytes, with nothing beside it or with the seal and the state that lay there.
void Try(const HiveFolder& hive, const std::string& bytes, const std::string& seal, const std::string& state,
         Outcome& outcome) {
    Hive().Close();
    fs::remove_all(hive.Folder());
    fs::create_directories(hive.Folder());
    std::ofstream(hive.File(), std::ios::binary) << bytes;
    if (!seal.empty()) std::ofstream(hive.File().string() + ".siegel", std::ios::binary) << seal;
    if (!state.empty()) std::ofstream(hive.File().string() + ".stand", std::ios::binary) << state;
    const int right = CountRight();
    ++outcome.runs;
    outcome.right += right;
    outcome.worst = std::min(outcome.worst, right);
    const auto report = TakeRecoveryReport();
    ASSERT_TRUE(report) << "the damage is noticed";
    EXPECT_TRUE(right == kNotes || !report->doubtful.empty() || report->lost > 0 || !report->isComplete)
        << "what is not right is named";
    EXPECT_TRUE(Content(FilePath(report->setAside)) == bytes) << "what was found is kept as it was";
    // And it goes on from there.
    EXPECT_TRUE(HealthOfRegistry().writing.Kept());
    const std::multiset<std::wstring> before = Texts();
    Hive().Close();
    EXPECT_TRUE(Texts() == before);
    EXPECT_FALSE(TakeRecoveryReport());
}

TEST(RegistryRecovery, ChangedBytesAndCutFiles) {
    const HiveFolder hive;
    ASSERT_TRUE(SaveNotes(L" wie früher").Kept());
    ASSERT_TRUE(KeepState().Kept());
    const std::string older = Content(hive.File().string() + ".stand");
    ASSERT_TRUE(SaveNotes().Kept());
    ASSERT_TRUE(KeepState().Kept());
    Hive().Close();
    const std::string good = Content(hive.File()), seal = Content(hive.File().string() + ".siegel"),
                      state = Content(hive.File().string() + ".stand");
    ASSERT_FALSE(seal.empty());
    ASSERT_FALSE(state.empty());
    const int bytes = AllFaults() ? 300 : 30, cuts = AllFaults() ? 60 : 8;
    std::mt19937 random(26);
    Outcome changed[2], cut[2], others;
    // A single wrong byte can be told from the checksum.
    std::string beyond = good;
    beyond.replace(beyond.find(ToUtf8(TextOf(7))), 2, "nO");
    Try(hive, beyond, seal, {}, others);
    for (int i = 0; i < bytes; ++i) {
        std::string damaged = good;
        char& byte = damaged[random() % damaged.size()];
        byte = static_cast<char>(byte ^ (1 + random() % 255));
        Try(hive, damaged, seal, {}, changed[0]);
        Try(hive, damaged, seal, state, changed[1]);
        Try(hive, damaged, seal, older, others);
    }
    for (int i = 0; i < cuts; ++i) {
        const std::string damaged = good.substr(0, random() % good.size());
        if (damaged.empty()) continue;
        Try(hive, damaged, seal, {}, cut[0]);
        Try(hive, damaged, seal, state, cut[1]);
    }
    if (AllFaults())
        for (const Outcome& each : {changed[0], changed[1], cut[0], cut[1]})
            std::printf("%d runs: %.3f of %d notes right, at worst %d\n", each.runs, each.Right(), kNotes,
                        each.worst);
    EXPECT_GE(changed[0].Right(), 49.9) << "from the file alone";
    EXPECT_EQ(changed[1].worst, kNotes);
    EXPECT_EQ(cut[1].worst, kNotes);
}

// As after a crash: no seal tells what the bytes of the file were.
TEST(RegistryRecovery, DamageOfTheStructureAloneIsNoticed) {
    const HiveFolder hive;
    SaveImage(5, 1);
    Hive().Close();
    fs::remove(hive.File().string() + ".siegel");
    std::string bytes = Content(hive.File());
    bytes[39] = 5;  // free pages that are nowhere
    std::ofstream(hive.File(), std::ios::binary) << bytes;
    EXPECT_EQ(MarkOfImage(5), 1);
    EXPECT_TRUE(TakeRecoveryReport());
}

TEST(RegistryRecovery, AByteIsRepairedOnlyWhereNoOtherCanBeMeant) {
    HiveImage image;
    HiveKey& key = *image.Create(*image.Find(2), "Note0");
    const HiveValue values[] = {
        {"Text", 1, "Milch und Brot"}, {"CreationTime", 1, "heute"}, {"X", 4, "abcd"}};
    for (const HiveValue& value : values) image.SetValue(key, value.name, value.type, value.data);
    const std::uint64_t checksum = ChecksumOf(key);
    int repaired = 0;
    for (const HiveValue& value : values) {
        for (std::size_t i = 0; i < value.data.size(); ++i) {
            std::string damaged = value.data;
            damaged[i] ^= 0x1E;
            image.SetValue(key, value.name, value.type, damaged);
            const auto found = RepairedValue(key, checksum);
            EXPECT_TRUE(!found || *found == value) << value.name << " at " << i;
            repaired += found.has_value();
        }
        image.SetValue(key, value.name, value.type, value.data);
    }
    EXPECT_GT(repaired, 14);
}

TEST(RegistryRecovery, AStateIsDueOnceAfterSomethingNew) {
    const HiveFolder hive;
    int due = 0;
    WhenStateIsDue([&](std::chrono::milliseconds) { ++due; });
    SaveImage(3, 1);
    SaveImage(3, 2);
    EXPECT_EQ(due, 1);
    EXPECT_TRUE(KeepState().Kept());
    SaveImage(3, 2);
    EXPECT_EQ(due, 1) << "nothing is new";
    EXPECT_TRUE(KeepState().Kept());
    Hive().Close();
    for (const auto& file : fs::directory_iterator(hive.Folder()))  // the next start is on another day
        fs::last_write_time(file, fs::last_write_time(file) - std::chrono::hours(24));
    EXPECT_EQ(MarkOfImage(3), 2);
    EXPECT_EQ(due, 1) << "the state is as new as the hive";
    SaveImage(3, 3);
    EXPECT_EQ(due, 2);
    Hive().Close();
    EXPECT_EQ(MarkOfImage(3), 3);
    EXPECT_EQ(due, 3) << "no state has it";
    WhenStateIsDue(nullptr);
}

TEST(RegistryRecovery, StatesOfSevenDaysAreKeptAndTheNewestGoodOneIsTaken) {
    const HiveFolder hive;
    const fs::path newest = hive.File().string() + ".stand";
    constexpr int kDays = 10;
    for (int day = 1; day <= kDays; ++day) {
        SaveImage(5, day);
        EXPECT_TRUE(KeepState().Kept());
        // Long ago, each a day later than the one before, at noon.
        const timespec time{(20'000 + day) * 86'400 + 43'200, 0}, times[] = {time, time};
        if (day < kDays) utimensat(AT_FDCWD, newest.c_str(), times, 0);
    }
    EXPECT_EQ(FilesOf(hive, ".stand-").size(), 7u);
    Hive().Close();
    for (const fs::path& file : {newest, hive.File()})
        std::ofstream(file, std::ios::binary | std::ios::trunc) << "keine Datenbank";
    EXPECT_EQ(MarkOfImage(5), kDays - 1) << "of the day before";
    const auto report = TakeRecoveryReport();
    ASSERT_TRUE(report);
    EXPECT_EQ(report->fromState.size(), 6u) << "the notes, and the key above them with the flag";
    EXPECT_EQ(report->doubtful.size(), 6u);
    EXPECT_FALSE(report->isComplete);
    Hive().Close();
    fs::remove(hive.File());
    EXPECT_EQ(MarkOfImage(5), kDays - 1) << "also where there is none";
}

}  // namespace
