#pragma once
// How much memory has been asked for, in bytes, whether it has been given back or not: a measure of work that
// is the same in every run.

#include <cstddef>

std::size_t BytesAskedFor();
