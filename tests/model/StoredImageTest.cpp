#include <gtest/gtest.h>

#include <functional>

#include "model/StoredImage.h"
#include "registry/clsRegistry.h"
#include "tests/addressbook/Entries.h"
#include "tests/registry/RegistryImage.h"

namespace {

using Strings = std::vector<std::wstring>;

std::wstring Path(const std::wstring& name) { return kSettingsKey + name; }

void PutText(const std::wstring& path, const std::wstring& text) {
    Registry().SetValue(Path(path), REG_TYPE_SZ, text);
}

Strings Subkeys() {
    Strings names;
    Registry().EnumKeys(kSettingsKey, names);
    return names;
}

std::vector<const Note*> NotesOf(const StoredImage& image) {
    std::vector<const Note*> notes;
    for (const StoredNote& stored : image.notes) notes.push_back(&stored.note);
    return notes;
}

bool Write(const StoredImage& image) {
    return WriteStoredImage(image.autostart, NotesOf(image), image.entries).Kept();
}

std::uint64_t StoredDigest() {
    const StoredImage image = ReadStoredImage();
    return DigestOf(image.autostart, NotesOf(image), image.entries);
}

// An image that lacks any of its values, those that are 0 excepted, has another digest.
void EveryValueCounts(const std::string& image) {
    const std::uint64_t whole = StoredDigest();
    for (std::size_t begin = 0, end = 0; begin < image.size(); begin = end) {
        end = image.find('\n', begin) + 1;
        const std::string line = image.substr(begin, end - begin);
        if (line.find('\t') == line.npos || line.ends_with("\t00000000\n")) continue;
        ASSERT_TRUE(WriteImage(std::string(image).erase(begin, line.size())));
        EXPECT_NE(StoredDigest(), whole) << line;
    }
    ASSERT_TRUE(WriteImage(image));
    EXPECT_EQ(StoredDigest(), whole);
}

class StoredImageTest : public testing::Test {
  protected:
    StoredImageTest() { Registry().DeleteKey(kSettingsKey); }
    ~StoredImageTest() override { Registry().DeleteKey(kSettingsKey); }
};

}  // namespace

// What stands here is what the programs of all platforms write and read.
TEST_F(StoredImageTest, HoldsEverything) {
    const std::string image =
        "Autostart\t4\t01000000\n"
        "AddressBookEntry0\\\n"
        "AddressBookEntry0\\Comment\t1\tim 2. Stock, „hinten“\n"
        "AddressBookEntry0\\IP\t1\t192.168.0.17\n"
        "AddressBookEntry0\\PCName\t1\tBüro\n"
        "Note0\\\n"
        "Note0\\Color\t4\t00ffff00\n"
        "Note0\\CreationTime\t1\t21.11.2026, 09:05:00\n"
        "Note0\\FontAlignment\t4\t02000000\n"
        "Note0\\FontBold\t4\t01000000\n"
        "Note0\\FontItalic\t4\t00000000\n"
        "Note0\\FontSize\t4\t11000000\n"
        "Note0\\FontUnderlined\t4\t01000000\n"
        "Note0\\Foreground\t4\t01000000\n"
        "Note0\\Height\t4\td0070000\n"
        "Note0\\Text\t1\tKäse & „Brot“\\r\\n3 €\n"
        "Note0\\Width\t4\t050d0000\n"
        "Note0\\X\t4\t6affffff\n"
        "Note0\\Y\t4\td2040000\n";
    ASSERT_TRUE(WriteImage(image));
    EveryValueCounts(image);
    StoredImage stored = ReadStoredImage();
    EXPECT_TRUE(stored.autostart);
    ASSERT_EQ(stored.notes.size(), 1u);
    EXPECT_EQ(stored.notes[0].note, (Note{.text = L"Käse & „Brot“\r\n3 €",
                                          .creationTime = L"21.11.2026, 09:05:00",
                                          .look = {.size = 17,
                                                   .bold = true,
                                                   .underlined = true,
                                                   .alignment = kAlignCentre,
                                                   .color = kLightBlue},
                                          .place = {.left = -150, .top = 1234, .width = 3333, .height = 2000},
                                          .foreground = true}));
    ASSERT_EQ(stored.entries.size(), 1u);
    EXPECT_EQ(stored.entries[0].PCName(), L"Büro");
    EXPECT_EQ(stored.entries[0].IP(), L"192.168.0.17");
    EXPECT_EQ(stored.entries[0].Comment(), L"im 2. Stock, „hinten“");

    Registry().DeleteKey(kSettingsKey);
    EXPECT_TRUE(Write(stored));
    EXPECT_EQ(ReadImage(), image);

    // Without notes the flag and the address book stay, and nothing else.
    stored.notes.clear();
    EXPECT_TRUE(Write(stored));
    EXPECT_EQ(ReadImage(), image.substr(0, image.find("Note0")));
}

TEST_F(StoredImageTest, TheDigestOfWhatWasWrittenIsThatOfWhatIsRead) {
    StoredImage written;
    written.autostart = true;
    for (const std::wstring& text :
         {std::wstring(L"a"), std::wstring(L"ü Ω"), std::wstring(L"bis\0hier", 8), std::wstring(5000, L'x'),
          std::wstring(5000, L'Ω'), std::wstring(1, wchar_t(0xD800)), std::wstring()})
        written.notes.emplace_back().note = {.text = text, .place = {10.5, -11.5, 3000.25, 1e12}};
    while (written.notes.size() < 12) written.notes.push_back(written.notes[0]);  // Note10 before Note2
    written.entries = {Entry(L"Büro Ω", L"10.0.0.1"), Entry(std::wstring(5000, L'x'))};
    const auto digest = [](const StoredImage& image) {
        return DigestOf(image.autostart, NotesOf(image), image.entries, Digested::AsRead);
    };
    ASSERT_TRUE(Write(written));
    EXPECT_EQ(digest(ReadStoredImage()), digest(written));
    written.notes[11].note.place.left += 1;
    EXPECT_NE(digest(ReadStoredImage()), digest(written));
}

TEST_F(StoredImageTest, TakesSubkeysInTheRegistrysOrderAndNumbersThemAnew) {
    for (const wchar_t* name : {L"Note0", L"Note2", L"Note10", L"NoteX", L"note7", L"Nota"})
        PutText(name + std::wstring(L"\\Text"), name);
    for (const wchar_t* name : {L"AddressBookEntry2", L"AddressBookEntry10", L"AddressBookEntry0",
                                L"AddressBookEntry", L"AddressbookEntry7", L"AddressBookEntr"})
        PutText(name + std::wstring(L"\\PCName"), name);
    Registry().CreateKey(Path(L"Note5"));
    StoredImage stored = ReadStoredImage();
    Strings texts, names;
    for (const StoredNote& each : stored.notes) texts.push_back(each.note.text);
    for (const clsAddressBookEntry& entry : stored.entries) names.push_back(entry.PCName());
    EXPECT_EQ(texts, (Strings{L"Note0", L"Note10", L"Note2", L"", L"NoteX"}));
    EXPECT_EQ(stored.notes[3].note.look.size, 0);
    EXPECT_EQ(names, (Strings{L"AddressBookEntry", L"AddressBookEntry0", L"AddressBookEntry10",
                              L"AddressBookEntry2"}));
    // The key of a note is its position among all subkeys.
    EXPECT_EQ(Subkeys()[static_cast<std::size_t>(stored.notes[0].key)], L"Note0");
    EXPECT_EQ(Subkeys()[static_cast<std::size_t>(stored.notes[4].key)], L"NoteX");

    EXPECT_TRUE(Write(stored));
    EXPECT_EQ(Subkeys(), (Strings{L"AddressBookEntry0", L"AddressBookEntry1", L"AddressBookEntry2",
                                  L"AddressBookEntry3", L"Note0", L"Note1", L"Note2", L"Note3", L"Note4"}));
    EXPECT_EQ(AsText(Registry().GetValue(Path(L"Note1\\Text"), REG_TYPE_SZ)), L"Note10");
}

// A save writes what differs from the last one; whatever has happened since, what is there afterwards is the
// same as if nothing had been there before.
TEST_F(StoredImageTest, IsWholeAfterWhateverWasThere) {
    StoredImage first;
    for (const wchar_t* text : {L"a", L"b", L"c"}) first.notes.emplace_back().note.text = text;
    first.entries = {Entry(L"Büro", L"10.0.0.1")};
    const auto changed = [&](const std::function<void(StoredImage&)>& change) {
        StoredImage image = first;
        change(image);
        return image;
    };
    const std::pair<const char*, StoredImage> saves[] = {
        {"nothing", first},
        {"one text", changed([](StoredImage& image) { image.notes[1].note.text = L"x"; })},
        {"one place", changed([](StoredImage& image) { image.notes[2].note.place.left = 15; })},
        {"one more", changed([](StoredImage& image) { image.notes.push_back(image.notes[0]); })},
        {"one less", changed([](StoredImage& image) { image.notes.erase(image.notes.begin()); })},
        {"none", StoredImage()},
        {"the flag", changed([](StoredImage& image) { image.autostart = true; })},
        {"another entry", changed([](StoredImage& image) { image.entries[0] = Entry(L"Keller"); })},
    };
    const std::pair<const char*, std::function<void()>> meanwhile[] = {
        {"nothing", [] {}},
        {"a value", [] { PutText(L"Note1\\Text", L"y"); }},
        {"a value too much", [] { PutText(L"Note1\\Size", L"y"); }},
        {"a key too much", [] { PutText(L"Note7\\Text", L"y"); }},
        {"a value missing", [] { Registry().DeleteValue(Path(L"Note0\\Color")); }},
        {"a key missing", [] { Registry().DeleteKey(Path(L"Note0")); }},
        {"all missing", [] { Registry().DeleteKey(kSettingsKey); }},
    };
    for (const auto& [what, next] : saves) {
        Registry().DeleteKey(kSettingsKey);
        ASSERT_TRUE(Write(next));
        const std::string expected = ReadImage();
        for (const auto& [event, happens] : meanwhile) {
            SCOPED_TRACE(std::string(what) + ", meanwhile " + event);
            ASSERT_TRUE(Write(first));
            happens();
            ASSERT_TRUE(Write(next));
            EXPECT_EQ(ReadImage(), expected);
        }
    }
}
