#include <gtest/gtest.h>

#include <limits>

#include "base/Text.h"
#include "registry/clsRegistry.h"

namespace {

using Texts = std::vector<std::wstring>;

const std::wstring kKey = L"HKCU\\Software\\KivoraTest";
const std::wstring kBelow = kKey + L"\\";

class clsRegistryTest : public testing::Test {
  protected:
    clsRegistryTest() { Registry().DeleteKey(kKey); }
    ~clsRegistryTest() override { Registry().DeleteKey(kKey); }
    clsRegistry& registry = Registry();
};

TEST_F(clsRegistryTest, UnknownRootsAndMissingKeys) {
    const std::pair<const wchar_t*, bool> rows[] = {
        {L"HKPD", false},  {L"hklm", false},   {L"HKEY_CURRENT_USER", false},
        {L"", false},      {L"\\HKCU", false}, {L" HKCU", false},
        {L"HKCU ", false}, {L"HKCU", true},    {L"HKCU\\Software\\KivoraTest", true}};
    for (const auto& [root, known] : rows) {
        SCOPED_TRACE(ToUtf8(root));
        const std::wstring key = root + std::wstring(L"\\KivoraTest"), value = key + L"\\x";
        Texts values{L"old", L"old"}, keys = values;
        EXPECT_EQ(registry.EnumValues(key, values), known);
        EXPECT_EQ(registry.EnumKeys(key, keys), -1);
        EXPECT_EQ(values, Texts{L""});
        EXPECT_EQ(keys, Texts{L""});
        EXPECT_FALSE(registry.KeyExists(key));
        EXPECT_EQ(registry.DeleteValue(value), known);
        EXPECT_EQ(registry.GetValue(value, REG_TYPE_SZ), known ? RegistryValue(L"") : RegistryValue());
        EXPECT_EQ(registry.GetValue(value, REG_TYPE_DWORD), known ? RegistryValue(0) : RegistryValue());
        EXPECT_EQ(registry.DeleteKey(key), known);
        if (known) continue;
        EXPECT_FALSE(registry.SetValue(value, REG_TYPE_SZ, L"x"));
        EXPECT_FALSE(registry.SetValue(value, REG_TYPE_DWORD, 1));
        EXPECT_FALSE(registry.CreateKey(key));
    }
    for (const auto* root : {L"HKCR", L"HKCU", L"HKLM", L"HKU", L"HKCC", L"HKCU\\", L"HKLM\\"})
        EXPECT_TRUE(registry.KeyExists(root)) << ToUtf8(root);
}

TEST_F(clsRegistryTest, PathsAreSplitAtTheLastBackslash) {
    EXPECT_TRUE(registry.SetValue(kKey + L"\\a\\name", REG_TYPE_SZ, L"under a"));
    EXPECT_TRUE(registry.SetValue(kKey + L"\\a\\", REG_TYPE_SZ, L"the unnamed one"));
    EXPECT_TRUE(registry.SetValue(kKey + L"\\a", REG_TYPE_SZ, L"a value named like the key"));
    EXPECT_TRUE(registry.SetValue(L"HKCU\\KivoraTestValue", REG_TYPE_SZ, L"under the root"));
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"HKCU\\Software\\KivoraTest\\a\\name", L"under a"},
        {L"HKCU\\SOFTWARE\\kivoratest\\A\\NAME", L"under a"},
        {L"HKCU\\Software\\KivoraTest\\a\\", L"the unnamed one"},
        {L"HKCU\\Software\\KivoraTest\\a", L"a value named like the key"},
        {L"HKCU\\KivoraTestValue", L"under the root"},
        {L"HKLM\\KivoraTestValue", L""},
    };
    for (const auto& [path, text] : cases) EXPECT_EQ(AsText(registry.GetValue(path, REG_TYPE_SZ)), text);
    EXPECT_TRUE(registry.DeleteValue(L"HKCU\\KivoraTestValue"));
    EXPECT_EQ(AsText(registry.GetValue(L"HKCU\\KivoraTestValue", REG_TYPE_SZ)), L"");
}

TEST_F(clsRegistryTest, EnumeratingTellsEmptyFromMissing) {
    Texts names;
    EXPECT_EQ(registry.EnumKeys(kBelow, names), -1);
    EXPECT_EQ(names, Texts{L""});
    registry.CreateKey(kBelow);
    EXPECT_EQ(registry.EnumKeys(kBelow, names), 0);
    EXPECT_EQ(names, Texts{L""});
    EXPECT_TRUE(registry.EnumValues(kKey, names));
    EXPECT_EQ(names, Texts{L""});

    for (const auto* name : {L"Note2", L"note10", L"Note1a", L"NOTE1", L"Note1", L"Öl", L"öl", L"ÖL2"})
        registry.CreateKey(kBelow + name);
    EXPECT_EQ(registry.EnumKeys(kKey, names), 6);
    EXPECT_EQ(Texts(names.begin(), names.begin() + 4), (Texts{L"NOTE1", L"note10", L"Note1a", L"Note2"}));
    EXPECT_TRUE(registry.KeyExists(kBelow + L"öL2"));

    registry.SetValue(kBelow + L"b", REG_TYPE_SZ,
                      std::wstring(500, L'x'));  // more than the scratch buffer holds
    registry.SetValue(kBelow + L"Größe", REG_TYPE_DWORD, 5);
    registry.SetValue(kBelow + L"A", REG_TYPE_DWORD, 5);
    registry.SetValue(kBelow, REG_TYPE_SZ, L"unnamed");
    EXPECT_TRUE(registry.EnumValues(kKey, names));
    EXPECT_EQ(names, (Texts{L"", L"A", L"b", L"Größe"}));
}

TEST_F(clsRegistryTest, DeletingAKeyTakesAllBelowItAndNothingBeside) {
    for (const auto* end : {L"", L"\\"}) {
        for (const auto* key : {L"a\\b\\c", L"a\\d", L"e"})
            registry.SetValue(kBelow + key + L"\\v", REG_TYPE_DWORD, 1);
        registry.SetValue(kBelow + L"value", REG_TYPE_DWORD, 1);
        registry.CreateKey(kKey + L"2\\a");
        EXPECT_TRUE(registry.DeleteKey(kKey + L"\\a" + end));
        EXPECT_FALSE(registry.KeyExists(kBelow + L"a"));
        EXPECT_TRUE(registry.KeyExists(kBelow + L"e"));
        EXPECT_TRUE(registry.DeleteKey(kKey + end));
        EXPECT_FALSE(registry.KeyExists(kKey)) << "with its values";
        EXPECT_TRUE(registry.KeyExists(kKey + L"2\\a"));
        EXPECT_TRUE(registry.DeleteKey(kKey + L"2"));
    }
    // What comes back is empty, and in its new spelling.
    RegistryTransaction image;
    registry.SetValue(kBelow + L"a\\b\\v", REG_TYPE_DWORD, 1);
    registry.SetValue(kBelow + L"a\\v", REG_TYPE_DWORD, 1);
    registry.DeleteKey(kBelow + L"a");
    registry.SetValue(kBelow + L"A\\again", REG_TYPE_SZ, L"there");
    EXPECT_EQ(AsText(registry.GetValue(kBelow + L"a\\again", REG_TYPE_SZ)), L"there");
    Texts names;
    EXPECT_EQ(registry.EnumKeys(kKey, names), 1);
    EXPECT_EQ(names, Texts{L"A"});
    EXPECT_EQ(registry.EnumKeys(kBelow + L"a", names), 0);
    EXPECT_TRUE(registry.EnumValues(kBelow + L"a", names));
    EXPECT_EQ(names, Texts{L"again"});
    EXPECT_TRUE(image.Commit().Kept());
}

TEST_F(clsRegistryTest, ATransactionSaysThatSomethingWasNotWritten) {
    std::wstring deep = kKey;
    for (int i = 0; i < 600; ++i) deep += L"\\d";
    for (const std::wstring& key : {kBelow + L"new\\" + std::wstring(256, L'k'), deep}) {
        RegistryTransaction image;
        EXPECT_TRUE(registry.CreateKey(key));
        const KeepResult result = image.Commit();
        EXPECT_EQ(result.failure, KeepFailure::Failed);
        EXPECT_NE(result.detail, "");
        EXPECT_FALSE(registry.KeyExists(kKey)) << "nothing of it is made";
    }
    RegistryTransaction image;
    registry.CreateKey(kBelow + std::wstring(255, L'k'));
    registry.DeleteKey(kBelow + L"missing");
    EXPECT_TRUE(image.Commit().Kept());
    EXPECT_TRUE(registry.KeyExists(kBelow + std::wstring(255, L'k')));
}

TEST_F(clsRegistryTest, TextsComeBackUpToTheirLimit) {
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"", L""},
        {L"Zeile 1\r\nZeile 2", L"Zeile 1\r\nZeile 2"},
        {L"  Blanks around  ", L"  Blanks around  "},
        {L"Käse „5 €“", L"Käse „5 €“"},
        {std::wstring(L"up to\0here", 10), L"up to"},
        {std::wstring(4095, L'x'), std::wstring(4095, L'x')},
        {std::wstring(4095, L'ü'), std::wstring(4095, L'ü')},
        {std::wstring(4096, L'x'), L""},
        {std::wstring(100'000, L'x'), L""},
    };
    for (const std::int32_t type : {REG_TYPE_SZ, REG_TYPE_EXPAND_SZ, REG_TYPE_MULTI_SZ})
        for (const auto& [written, read] : cases) {
            EXPECT_TRUE(registry.SetValue(kBelow + L"text", type, written));
            EXPECT_EQ(AsText(registry.GetValue(kBelow + L"text", type)), read)
                << written.size() << " characters of type " << type;
            EXPECT_EQ(AsReadBack(written), read);
            EXPECT_EQ(WholeText(kBelow + L"text"), written.substr(0, written.find(L'\0')));
        }
}

TEST_F(clsRegistryTest, NumbersAreRoundedToWholeOnes) {
    const std::pair<double, std::int32_t> cases[] = {
        {0, 0},
        {0.5, 0},
        {1.5, 2},
        {2.5, 2},
        {-0.5, 0},
        {-1.5, -2},
        {1234.6, 1235},
        {-4800.4, -4800},
        {16776960, 0xFFFF00},
        {1e10, std::numeric_limits<std::int32_t>::max()},
        {-1e10, std::numeric_limits<std::int32_t>::min()},
        {std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (const auto& [written, read] : cases) {
        EXPECT_TRUE(registry.SetValue(kBelow + L"X", REG_TYPE_DWORD, written));
        EXPECT_EQ(AsNumber(registry.GetValue(kBelow + L"X", REG_TYPE_DWORD)), read) << written;
    }
}

TEST_F(clsRegistryTest, TheStoredTypeIsNotCompared) {
    registry.SetValue(kBelow + L"v", REG_TYPE_SZ, L"abc");
    EXPECT_EQ(AsNumber(registry.GetValue(kBelow + L"v", REG_TYPE_DWORD)) & 0xFFFFFF, 0x636261);
    registry.SetValue(kBelow + L"v", REG_TYPE_SZ, L"longer than four");
    EXPECT_EQ(AsNumber(registry.GetValue(kBelow + L"v", REG_TYPE_DWORD)), 0);
    registry.SetValue(kBelow + L"v", REG_TYPE_DWORD, 0x00004241);
    EXPECT_EQ(AsText(registry.GetValue(kBelow + L"v", REG_TYPE_SZ)), L"AB");
    registry.SetValue(kBelow + L"v", REG_TYPE_SZ, L"ab");
    EXPECT_EQ(AsNumber(registry.GetValue(kBelow + L"v", REG_TYPE_DWORD)), 0x6261) << "the rest stays 0";
    registry.SetValue(kBelow + L"v", REG_TYPE_DWORD, 0x44434241);
    EXPECT_EQ(AsText(registry.GetValue(kBelow + L"v", REG_TYPE_SZ)), L"") << "no NUL, nothing";
}

}  // namespace
