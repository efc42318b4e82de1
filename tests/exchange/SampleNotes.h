#pragma once
// The notes of the sample files, and a writer of the file format that knows nothing of the program's reader.

#include <string>
#include <vector>

#include "exchange/ExportedNote.h"

struct SampleFile {
    const char* name;  // in the folder of the samples
    std::vector<ExportedNote> notes;
};

const std::vector<SampleFile>& SampleFiles();

std::string FileBytes(const std::vector<ExportedNote>& notes);
