#pragma once
// The bytes by which the platform's registry stands for a text, by the means of SQLite or Windows: nothing of
// the program's own conversions is in it.

#include <string>

std::string Utf8OfStored(const std::string& bytes);
std::string StoredOfUtf8(const std::string& text);
