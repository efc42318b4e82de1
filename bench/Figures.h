#pragma once
// One measured number, as a line for bench/table: what was measured, on which program, the unit, the value.

#include <cstdio>
#include <string>

inline void Figure(const std::string& what, const char* program, const char* unit, double value) {
    std::printf("%s\t%s\t%s\t%.4f\n", what.c_str(), program, unit, value);
    std::fflush(stdout);
}

inline const char* const kKivora = "Kivora";
inline const char* const kFloor = "floor";
