#pragma once

#include <cstddef>

/// A new random UUID as text in the form "nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn", allocated with
/// malloc and owned by the caller; null when no randomness or no memory is to be had.
char* UUID_CreateRandom();

/// Writes the packed text form (lower case, hyphens in their places) of the UUID in `text`, which
/// may hold upper case and any hyphens, into `buffer`. `size` counts the closing NUL; the two texts
/// may be the same. Returns `buffer`, or null when `text` is no UUID or `size` is too small.
char* UUID_PackText(const char* text, char* buffer, std::size_t size);
