#include "base/DesktopEntry.h"

namespace {

constexpr std::string_view kPlainCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-+";

// What is written as a backslash and a letter, and the letters.
constexpr std::string_view kSpecial = "\\\n\r\t";
constexpr std::string_view kSpecialNames = "\\nrt";

}  // namespace

std::string DesktopString(std::string_view text) {
    std::string value;
    for (const char character : text) {
        const std::size_t special = kSpecial.find(character);
        if (special == kSpecial.npos) {
            value += character;
        } else {
            value += '\\';
            value += kSpecialNames[special];
        }
    }
    return value;
}

std::string DesktopExec(std::string_view path) {
    const bool plain = path.find_first_not_of(kPlainCharacters) == std::string_view::npos;
    if (plain) return std::string(path);
    // Two layers: inside the quotes four characters take a backslash and the percent sign is doubled; the
    // value as a whole is a string like any other.
    std::string quoted;
    for (const char character : path) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos) quoted += '\\';
        quoted.append(character == '%' ? 2 : 1, character);
    }
    // Desktops that look for the program before they expand the line would look for one with two percent
    // signs.
    const char* const begin = path.find('%') == std::string_view::npos ? "\"" : "env \"";
    return begin + DesktopString(quoted) + '"';
}

std::string AutostartEntry(std::string_view path) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Kivora\n"
           "Comment=Notizen auf dem Bildschirm\n"
           "Exec=" +
           DesktopExec(path) +
           "\n"
           "Icon=kivora\n"
           "Terminal=false\n";
}
