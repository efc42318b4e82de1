// Damaged hives: every change is noticed, the notes come back, and what was found is set aside as it was.
#include <sys/stat.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <set>

#include "base/FileName.h"
#include "base/Text.h"
#include "model/StoredImage.h"
#include "registry/RegistryHealth.h"
#include "registry/RegistryHive.h"
#include "tests/registry/HiveFolder.h"
#include "tests/support/SmallDisk_unix.h"

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
    for (const auto& [at, byte] : {std::pair(39, 5), {63, 0}}) {  // free pages that are nowhere; no format
        const HiveFolder hive;
        SaveImage(5, 1);
        Hive().Close();
        fs::remove(hive.File().string() + ".siegel");
        std::string bytes = Content(hive.File());
        bytes[static_cast<std::size_t>(at)] = static_cast<char>(byte);
        std::ofstream(hive.File(), std::ios::binary) << bytes;
        EXPECT_EQ(MarkOfImage(5), 1);
        EXPECT_TRUE(TakeRecoveryReport()) << at;
    }
}

TEST(RegistryRecovery, ASealThatSaysNothingIsNoDamage) {
    const HiveFolder hive;
    const std::string seal = hive.File().string() + ".siegel";
    SaveImage(5, 1);
    Hive().Close();
    const std::string older = Content(seal);
    SaveImage(5, 2);
    Hive().Close();
    for (const std::string& text : {older, std::string("kein Siegel"), std::string()}) {
        std::ofstream(seal, std::ios::binary) << text;
        EXPECT_EQ(MarkOfImage(5), 2);
        EXPECT_FALSE(TakeRecoveryReport()) << text;
        Hive().Close();
    }
}

// A program was killed between making a new hive and putting it in its place.
TEST(RegistryRecovery, AFinishedNewHiveCountsAsLongAsTheOldOneIsDamaged) {
    const HiveFolder hive;
    const fs::path finished = hive.File().string() + ".neu";
    fs::create_directories(hive.Folder());
    std::ofstream(finished) << "halb";
    EXPECT_TRUE(SaveImage(3, 1).Kept());
    EXPECT_FALSE(TakeRecoveryReport()) << "it was to be the first one";
    EXPECT_TRUE(KeepState().Kept());
    for (const bool isDamaged : {true, false}) {
        SCOPED_TRACE(isDamaged);
        SaveImage(3, 2);
        Hive().Close();
        fs::copy_file(hive.File(), finished);
        if (!isDamaged) {
            SaveImage(3, 3);
            EXPECT_TRUE(KeepState().Kept());
            Hive().Close();
        }
        std::ofstream(hive.File(), std::ios::binary) << "keine Datenbank";
        EXPECT_EQ(MarkOfImage(3), isDamaged ? 2 : 3);
        EXPECT_TRUE(TakeRecoveryReport());
    }
}

TEST(RegistryRecovery, WhatAFullDiskDoesNotTakeIsShown) {
    const HiveFolder hive;
    SaveImage(5, 1);
    EXPECT_TRUE(KeepState().Kept());
    Hive().Close();
    std::ofstream(hive.File(), std::ios::binary) << "keine Datenbank";
    {
        const SmallDisk full(1'000);
        EXPECT_EQ(MarkOfImage(5), 1);
        EXPECT_FALSE(SaveImage(5, 2).Kept());
        EXPECT_EQ(MarkOfImage(5), 1);
        EXPECT_TRUE(Defective(hive).empty() && FilesOf(hive, ".neu").empty());
    }
    EXPECT_TRUE(SaveImage(5, 3).Kept());
    EXPECT_EQ(Content(Defective(hive).at(0)), "keine Datenbank");
}

TEST(RegistryRecovery, DamageOfAnOpenHiveCostsNothing) {
    const auto damage = [](const HiveFolder& hive) {
        std::fstream file(hive.File(), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(4096) << std::string(fs::file_size(hive.File()) - 4096, 'x');
    };
    const struct {
        const char* what;
        std::function<void(const HiveFolder&)> notice;
        int mark;
    } rows[] = {
        {"by reading what another program has changed",
         [](const HiveFolder& hive) { hive.Sql("DROP TABLE key_value"); }, 1},
        {"by saving",
         [&](const HiveFolder& hive) {
             damage(hive);
             EXPECT_TRUE(SaveImage(20, 3).Kept());
         },
         3},
        {"by keeping a state",
         [&](const HiveFolder& hive) {
             SaveImage(20, 2);
             hive.Sql(" PRAGMA wal_checkpoint(TRUNCATE)");
             damage(hive);
             KeepState();
         },
         2},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const HiveFolder hive;
        SaveImage(20, 1);
        EXPECT_TRUE(KeepState().Kept());
        const std::string state = Content(hive.File().string() + ".stand");
        Hive().Close();
        EXPECT_EQ(MarkOfImage(20), 1) << "it is open, and nothing of it in memory but the image";
        row.notice(hive);
        EXPECT_EQ(MarkOfImage(20), row.mark);
        const auto report = TakeRecoveryReport();
        EXPECT_TRUE(report && report->event == RecoveryReport::Damaged);
        EXPECT_TRUE(Content(hive.File().string() + ".stand") == state);
        Hive().Close();
        EXPECT_EQ(MarkOfImage(20), row.mark);
        EXPECT_FALSE(TakeRecoveryReport());
    }
}

TEST(RegistryRecovery, AByteIsRepairedOnlyWhereNoOtherCanBeMeant) {
    HiveImage image;
    HiveKey& key = *image.Create(*image.Find(2), "Note0");
    const HiveValue values[] = {
        {"Text", 1, "Milch und Brot"}, {"CreationTime", 1, "heute"}, {"X", 4, "abcd"}};
    for (const HiveValue& value : values) image.SetValue(key, value.name, value.type, value.data);
    const std::uint64_t checksum = ChecksumOf(key);
    int repaired = 0;
    const auto repair = [&](const std::string& right, std::size_t at, bool isName) {
        const auto found = RepairedByte(key, checksum);
        EXPECT_TRUE(!found || (found->bytes == right && isName == !found->value)) << right << " at " << at;
        repaired += found.has_value();
    };
    for (const HiveValue& value : values) {
        for (std::size_t i = 0; i < value.data.size(); ++i) {
            std::string damaged = value.data;
            damaged[i] ^= 0x1E;
            image.SetValue(key, value.name, value.type, damaged);
            repair(value.data, i, false);
        }
        image.SetValue(key, value.name, value.type, value.data);
    }
    const std::string name = key.name;
    for (std::size_t i = 0; i < name.size(); ++i) {
        std::string damaged = name;
        damaged[i] ^= 0x1E;
        ASSERT_TRUE(image.RenameKey(key, damaged));
        repair(name, i, true);
    }
    EXPECT_GT(repaired, 16);
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
    fs::create_directories(hive.Folder());
    std::ofstream(newest.string() + "-vor dem Umzug") << "des Benutzers";
    for (int day = 1; day <= kDays; ++day) {
        SaveImage(5, day);
        EXPECT_TRUE(KeepState().Kept());
        // Long ago, each a day later than the one before, at noon.
        const timespec time{(20'000 + day) * 86'400 + 43'200, 0}, times[] = {time, time};
        if (day < kDays) utimensat(AT_FDCWD, newest.c_str(), times, 0);
    }
    EXPECT_EQ(FilesOf(hive, ".stand-").size(), 7u + 1);
    EXPECT_EQ(Content(newest.string() + "-vor dem Umzug"), "des Benutzers");
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
