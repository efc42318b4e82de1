#include "app/DesktopEntry.h"

std::string DesktopExec(std::string_view path) {
    // Two layers: inside the quotes four characters take a backslash and the percent sign is doubled; then
    // the value as a whole is a string, in which a backslash and line breaks are written with one more
    // backslash.
    std::string value = "\"";
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
