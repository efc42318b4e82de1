#include "tests/registry/RegistryImage.h"

#include <charconv>
#include <optional>
#include <sstream>
#include <vector>

#include "base/Text.h"
#include "registry/RegistryCalls.h"
#include "registry/clsRegistry.h"
#include "tests/registry/StoredText.h"

using namespace RegistryCalls;

namespace {

constexpr std::uint32_t kMachine = 2;
const std::string kPlace = "Software\\Kivora\\1.5\\";
const std::string kEscaped("\r\n\t\\\0", 5), kEscapes = "rnt\\0";

struct Line {
    std::string key, name;  // as the registry has them, the key with its last backslash
    Value value;            // of type 0 in the line of a key
};

bool IsText(std::uint32_t type) { return type == 1 || type == 2 || type == 7; }

std::string Shown(const Value& value) {
    std::string shown;
    if (IsText(value.type)) {
        for (const char c : Utf8OfStored(value.bytes)) {
            const std::size_t escape = kEscaped.find(c);
            shown += escape == std::string::npos ? std::string(1, c) : std::string("\\") + kEscapes[escape];
        }
    } else {
        for (const char c : value.bytes) {
            const auto byte = static_cast<unsigned char>(c);
            shown += "0123456789abcdef"[byte >> 4];
            shown += "0123456789abcdef"[byte & 15];
        }
    }
    return shown;
}

std::optional<std::string> DataOf(std::uint32_t type, const std::string& shown) {
    std::string data;
    if (IsText(type)) {
        for (std::size_t at = 0; at < shown.size(); ++at) {
            if (shown[at] != '\\') {
                data += shown[at];
                continue;
            }
            const std::size_t escape = ++at < shown.size() ? kEscapes.find(shown[at]) : std::string::npos;
            if (escape == std::string::npos) return std::nullopt;
            data += kEscaped[escape];
        }
        return StoredOfUtf8(data);
    }
    for (std::size_t at = 0; at < shown.size(); at += 2) {
        int byte = 0;
        const char* const end = shown.data() + std::min(at + 2, shown.size());
        if (std::from_chars(shown.data() + at, end, byte, 16).ptr != shown.data() + at + 2)
            return std::nullopt;
        data += static_cast<char>(byte);
    }
    return data;
}

std::optional<Line> LineOf(const std::string& text) {
    const std::size_t typeAt = text.find('\t'), dataAt = text.find('\t', typeAt + 1);
    const std::string path = text.substr(0, typeAt);
    const std::size_t nameAt = path.rfind('\\') + 1;
    Line line{StoredOfUtf8(path.substr(0, nameAt)), StoredOfUtf8(path.substr(nameAt)), {}};
    if (typeAt == std::string::npos) return line.name.empty() ? std::optional(line) : std::nullopt;  // a key
    if (dataAt == std::string::npos) return std::nullopt;
    std::from_chars(text.data() + typeAt + 1, text.data() + dataAt, line.value.type);
    const auto data = DataOf(line.value.type, text.substr(dataAt + 1));
    if (line.value.type == 0 || !data) return std::nullopt;
    line.value.bytes = *data;
    return line;
}

void AddKey(const Key& key, const std::string& shown, std::string& image) {
    image += shown.empty() ? "" : shown + "\n";
    for (const std::string& name : ValueNames(key))
        if (const auto value = ReadValue(key, name, 100'000))
            image +=
                shown + Utf8OfStored(name) + "\t" + std::to_string(value->type) + "\t" + Shown(*value) + "\n";
    for (const std::string& name : SubKeys(key).value_or(std::vector<std::string>()))
        AddKey({key.root, key.path + name + "\\"}, shown + Utf8OfStored(name) + "\\", image);
}

}  // namespace

std::string ReadImage() {
    std::string image;
    AddKey({kMachine, kPlace}, {}, image);
    return image;
}

bool WriteImage(const std::string& image) {
    std::vector<Line> lines;
    std::istringstream texts(image);
    for (std::string text; std::getline(texts, text);) {
        const auto line = LineOf(text);
        if (!line) return false;
        lines.push_back(*line);
    }
    RegistryTransaction all;
    Registry().DeleteKey(L"HKLM\\" + FromUtf8(kPlace));
    for (const Line& line : lines) {
        const Key key{kMachine, kPlace + line.key};
        if (line.value.type == 0)
            CreateKey(key);
        else
            SetValue(key, line.name, line.value);
    }
    return all.Commit().Kept();
}
