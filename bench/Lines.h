#pragma once

#include <string>

// How fast notes and lines come in over the network, beside a bare server that answers each line.
void MeasureLines(const std::string& kivora);
