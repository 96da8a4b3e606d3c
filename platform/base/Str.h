#pragma once

#include <cstddef>

/// As snprintf, but a text that does not fit is an error: returns its length without the closing
/// NUL, or -1, leaving the longest prefix that fits. `buffer` is always closed when `size` is not
/// 0.
[[gnu::format(printf, 3, 4)]] int Str_Snprintf(char* buffer, std::size_t size, const char* format,
                                               ...);
