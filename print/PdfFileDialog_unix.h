#pragma once
// Asks for the name of the PDF to be written.

#include <filesystem>
#include <optional>

// Nothing when the user cancels or the program quits. A file that exists is only chosen when the user wants
// it replaced.
std::optional<std::filesystem::path> ChoosePdfFile();
