#include "model/StoredImage.h"

#include <string>

#include "base/ByteFields.h"
#include "base/twips.h"
#include "model/NoteValues.h"
#include "registry/ReplaceKey.h"
#include "registry/clsRegistry.h"

namespace {

const std::wstring kSettings = kSettingsKey;

// Reads values under a path into what is to hold them.
struct Reader {
    std::wstring path;

    void operator()(const wchar_t* name, std::wstring& text) const {
        text = AsText(Registry().GetValue(path + name, REG_TYPE_SZ));
    }
    void operator()(const wchar_t* name, bool& flag) const { flag = Number(name) != 0; }
    void operator()(const wchar_t* name, std::int32_t& number) const { number = Number(name); }
    void operator()(const wchar_t* name, double& number) const { number = Number(name); }
    std::int32_t Number(const wchar_t* name) const {
        return AsNumber(Registry().GetValue(path + name, REG_TYPE_DWORD));
    }
};

// Adds values under a path to what is to be written.
struct Writer {
    KeyContent& content;
    std::wstring path;

    void operator()(const wchar_t* name, const std::wstring& text) const {
        content.emplace_back(path + name, text);
    }
    void operator()(const wchar_t* name, double number) const {
        content.emplace_back(path + name, RoundToEven(number));
    }
};

clsAddressBookEntry ReadEntry(const Reader& read) {
    std::wstring pcName, ip, comment;
    read(L"PCName", pcName);
    read(L"IP", ip);
    read(L"Comment", comment);
    return {pcName, ip, comment};
}

template <class Write>
void WriteEntry(const Write& write, const clsAddressBookEntry& entry) {
    write(L"PCName", entry.PCName());
    write(L"IP", entry.IP());
    write(L"Comment", entry.Comment());
}

// Adds values to a sum, whole characters and numbers.
struct Digester {
    std::uint64_t& sum;
    Digested how;

    void Add(std::uint64_t value) const { sum = SumWith(sum, value); }
    void AddText(const std::wstring& text) const {
        Add(text.size());
        for (const wchar_t character : text) Add(static_cast<std::uint64_t>(character));
    }
    void operator()(const wchar_t*, const std::wstring& text) const {
        if (how == Digested::AsRead)
            AddText(AsReadBack(text));
        else
            AddText(text);
    }
    void operator()(const wchar_t*, double number) const {
        Add(static_cast<std::uint64_t>(RoundToEven(number)));
    }
};

}  // namespace

StoredImage ReadStoredImage() {
    StoredImage image;
    if (!CompleteKey(kSettings).Kept()) return image;
    RegistryTransaction reading;
    Reader{kSettings}(L"Autostart", image.autostart);
    std::vector<std::wstring> names;
    Registry().EnumKeys(kSettings, names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Reader read{kSettings + names[i] + L"\\"};
        if (names[i].starts_with(kNotePrefix)) {
            StoredNote& stored = image.notes.emplace_back();
            stored.key = static_cast<std::int32_t>(i);
            EachValue(stored.note, read);
            if (stored.note.text.empty()) stored.tooLong = WholeText(read.path + L"Text");
        } else if (names[i].starts_with(kEntryPrefix)) {
            image.entries.push_back(ReadEntry(read));
        }
    }
    return image;
}

KeepResult WriteStoredImage(bool autostart, const std::vector<const Note*>& notes,
                            const std::vector<clsAddressBookEntry>& entries) {
    KeyContent content;
    Writer{content, {}}(L"Autostart", autostart);
    const auto subkey = [&](const std::wstring& prefix, std::size_t number) {
        return Writer{content, prefix + std::to_wstring(number) + L"\\"};
    };
    for (std::size_t i = 0; i < notes.size(); ++i) EachValue(*notes[i], subkey(kNotePrefix, i));
    for (std::size_t i = 0; i < entries.size(); ++i) WriteEntry(subkey(kEntryPrefix, i), entries[i]);
    return ReplaceKey(kSettings, content);
}

std::uint64_t DigestOf(bool autostart, const std::vector<const Note*>& notes,
                       const std::vector<clsAddressBookEntry>& entries, Digested how) {
    // A sum does not depend on the order, which reading changes.
    std::uint64_t total = autostart;
    const auto add = [&](const auto& visit, std::uint64_t kind) {
        std::uint64_t sum = kSumStart + kind;
        visit(Digester{sum, how});
        total += sum;
    };
    for (const Note* const note : notes) add([&](const Digester& digest) { EachValue(*note, digest); }, 1);
    for (const clsAddressBookEntry& entry : entries)
        add([&](const Digester& digest) { WriteEntry(digest, entry); }, 2);
    return total;
}
