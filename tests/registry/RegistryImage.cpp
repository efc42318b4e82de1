#include "tests/registry/RegistryImage.h"

#include <cstdlib>
#include <sstream>

#include "base/Text.h"
#include "registry/RegistryCalls.h"
#include "registry/clsRegistry.h"

using namespace RegistryCalls;

namespace {

constexpr std::uint32_t kMachine = 2;
const std::string kPlace = "Software\\Kivora\\1.5\\";
const std::string kEscaped("\r\n\t\\\0", 5), kEscapes = "rnt\\0";
constexpr char kDigits[] = "0123456789abcdef";

bool IsText(std::uint32_t type) { return type == 1 || type == 2 || type == 7; }
std::string Utf8Of(const std::string& bytes) { return ToUtf8(FromCodePage(bytes)); }
std::string BytesOf(const std::string& text) { return ToCodePage(FromUtf8(text)); }

std::string Shown(const Value& value) {
    const bool text = IsText(value.type);
    std::string shown;
    for (const char c : text ? Utf8Of(value.bytes) : value.bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const std::size_t escape = text ? kEscaped.find(c) : std::string::npos;
        if (!text)
            shown.append({kDigits[byte >> 4], kDigits[byte & 15]});
        else if (escape != std::string::npos)
            shown.append({'\\', kEscapes[escape]});
        else
            shown += c;
    }
    return shown;
}

Value ValueOf(std::uint32_t type, const std::string& shown) {
    std::string data;
    for (std::size_t at = 0; at < shown.size(); ++at) {
        if (!IsText(type))
            data += static_cast<char>(std::strtol(shown.substr(at++, 2).c_str(), nullptr, 16));
        else if (shown[at] == '\\')
            data += kEscaped.at(kEscapes.find(shown.at(++at)));
        else
            data += shown[at];
    }
    return {type, IsText(type) ? BytesOf(data) : data};
}

void AddKey(const Key& key, const std::string& shown, std::string& image) {
    image += shown.empty() ? "" : shown + "\n";
    for (const std::string& name : ValueNames(key))
        if (const auto value = ReadValue(key, name, 100'000))
            image += shown + Utf8Of(name) + "\t" + std::to_string(value->type) + "\t" + Shown(*value) + "\n";
    for (const std::string& name : SubKeys(key).value_or(std::vector<std::string>()))
        AddKey({key.root, key.path + name + "\\"}, shown + Utf8Of(name) + "\\", image);
}

}  // namespace

std::string ReadImage() {
    std::string image;
    AddKey({kMachine, kPlace}, {}, image);
    return image;
}

bool WriteImage(const std::string& image) {
    RegistryTransaction all;
    Registry().DeleteKey(L"HKLM\\" + FromUtf8(kPlace));
    std::istringstream lines(image);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream parts(line);
        std::string path, type, data;
        std::getline(parts, path, '\t');
        std::getline(parts, type, '\t');
        std::getline(parts, data);
        const std::size_t name = path.rfind('\\') + 1;
        const Key key{kMachine, kPlace + BytesOf(path.substr(0, name))};
        if (type.empty())
            CreateKey(key);
        else
            SetValue(key, BytesOf(path.substr(name)),
                     ValueOf(static_cast<std::uint32_t>(std::stoul(type)), data));
    }
    return all.Commit().Kept();
}
