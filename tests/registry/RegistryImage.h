#pragma once
// The program's notes, address book and settings in the registry as text, the same on every platform: what
// one platform's program has written can be compared with what the other's has, and be brought there.
//
// A line for each key, "Note0\", and one for each of its values, "Note0\Text", type and data, with tabs
// between them. Data of the types of texts are their characters, with \r \n \t \\ \0 for what a line cannot
// hold; of other types their bytes, two digits each. It is made of the registry calls alone.

#include <string>

// The image in UTF-8; empty when there is nothing.
std::string ReadImage();

// Replaces all there is by an image.
bool WriteImage(const std::string& image);
