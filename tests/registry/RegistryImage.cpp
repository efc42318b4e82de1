#include "tests/registry/RegistryImage.h"

#include <charconv>
#include <optional>
#include <sstream>
#include <vector>

#include "base/basText.h"
#include "registry/RegistryCalls.h"
#include "registry/clsRegistry.h"
#include "tests/registry/StoredText.h"

using namespace RegistryCalls;

namespace {

constexpr Key kMachine = RootKey(2);
const std::string kPlace = "Software\\Kivora\\1.5\\";
const std::string kEscaped("\r\n\t\\\0", 5), kEscapes = "rnt\\0";

struct Value {
    std::string key, name;  // as the registry has them, the key with its last backslash
    std::uint32_t type = 0;
    std::string data;
};

bool IsText(std::uint32_t type) { return type == 1 || type == 2 || type == 7; }

std::string Shown(const Value& value) {
    std::string shown;
    if (IsText(value.type)) {
        for (const char c : Utf8OfStored(value.data)) {
            const std::size_t escape = kEscaped.find(c);
            shown += escape == std::string::npos ? std::string(1, c) : std::string("\\") + kEscapes[escape];
        }
    } else {
        for (const char c : value.data) {
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

std::optional<Value> ValueOf(const std::string& line) {
    const std::size_t typeAt = line.find('\t'), dataAt = line.find('\t', typeAt + 1);
    const std::string path = line.substr(0, typeAt);
    const std::size_t nameAt = path.rfind('\\') + 1;
    Value value{StoredOfUtf8(path.substr(0, nameAt)), StoredOfUtf8(path.substr(nameAt)), 0, {}};
    if (typeAt == std::string::npos)
        return value.name.empty() ? std::optional(value) : std::nullopt;  // a key
    if (dataAt == std::string::npos) return std::nullopt;
    std::from_chars(line.data() + typeAt + 1, line.data() + dataAt, value.type);
    const auto data = DataOf(value.type, line.substr(dataAt + 1));
    if (value.type == 0 || !data) return std::nullopt;
    value.data = *data;
    return value;
}

void AddKey(Key key, const std::string& path, std::string& image) {
    image += path.empty() ? "" : path + "\n";
    char name[256];
    std::string data(100'000, '\0');
    std::uint32_t size = sizeof name, dataSize = 0, type = 0;
    const auto next = [&] {
        size = sizeof name;
        dataSize = static_cast<std::uint32_t>(data.size());
    };
    const auto shownName = [&] { return path + Utf8OfStored(std::string(name, size)); };
    next();
    for (std::uint32_t i = 0; EnumValue(key, i, name, size, type, data.data(), dataSize) == kSuccess;
         ++i, next())
        image += shownName() + "\t" + std::to_string(type) + "\t" +
                 Shown({{}, {}, type, data.substr(0, dataSize)}) + "\n";
    for (std::uint32_t i = 0; EnumKey(key, i, name, size) == kSuccess; ++i, next()) {
        Key below = 0;
        if (OpenKey(key, std::string(name, size), kQueryValue | kEnumerateSubKeys, below) != kSuccess)
            continue;
        AddKey(below, shownName() + "\\", image);
        CloseKey(below);
    }
}

}  // namespace

std::string ReadImage() {
    std::string image;
    Key key = 0;
    if (OpenKey(kMachine, kPlace, kQueryValue | kEnumerateSubKeys, key) != kSuccess) return image;
    AddKey(key, {}, image);
    CloseKey(key);
    return image;
}

bool WriteImage(const std::string& image) {
    std::vector<Value> values;
    std::istringstream lines(image);
    for (std::string line; std::getline(lines, line);) {
        const auto value = ValueOf(line);
        if (!value) return false;
        values.push_back(*value);
    }
    RegistryTransaction all;
    Registry().DeleteKey(L"HKLM\\" + FromUtf8(kPlace));
    for (const Value& value : values) {
        Key key = 0;
        if (CreateKey(kMachine, kPlace + value.key, kSetValue, key) != kSuccess) return false;
        if (value.type != 0)
            SetValue(key, value.name, value.type, value.data.data(),
                     static_cast<std::uint32_t>(value.data.size()));
        CloseKey(key);
    }
    return all.Commit().Kept();
}
