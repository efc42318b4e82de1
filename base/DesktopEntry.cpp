#include "base/DesktopEntry.h"

namespace {

constexpr std::string_view kPlainCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-+";

void AddEscaped(std::string& value, char character) {
    switch (character) {
        case '\\':
            value += "\\\\";
            break;
        case '\n':
            value += "\\n";
            break;
        case '\r':
            value += "\\r";
            break;
        case '\t':
            value += "\\t";
            break;
        default:
            value += character;
    }
}

}  // namespace

std::string DesktopString(std::string_view text) {
    std::string value;
    for (const char character : text) AddEscaped(value, character);
    return value;
}

std::string DesktopExec(std::string_view path) {
    // Two layers: inside the quotes four characters take a backslash and the percent sign is doubled; then
    // the value as a whole is a string, in which a backslash and line breaks are written with one more
    // backslash.
    const bool plain = path.find_first_not_of(kPlainCharacters) == std::string_view::npos;
    if (plain) return std::string(path);
    // Desktops that look for the program before they expand the line would look for one with two percent
    // signs.
    std::string value = path.find('%') == std::string_view::npos ? "\"" : "env \"";
    for (const char character : path) {
        switch (character) {
            case '"':
            case '`':
            case '$':
                value += "\\\\";
                value += character;
                break;
            case '\\':
                value += "\\\\\\\\";
                break;
            case '%':
                value += "%%";
                break;
            default:
                AddEscaped(value, character);
        }
    }
    return value + '"';
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
