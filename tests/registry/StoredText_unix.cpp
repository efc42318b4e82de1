#include "tests/registry/StoredText.h"

// The hive holds UTF-8.
std::string Utf8OfStored(const std::string& bytes) { return bytes; }
std::string StoredOfUtf8(const std::string& text) { return text; }
