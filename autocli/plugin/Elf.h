#pragma once

#include <string>

namespace autocli {

/// Why the open file is no complete shared object for this machine; empty when it is one. Only
/// headers are read: they are held against the file's size, because the dynamic linker maps what
/// they promise, and touching a page beyond the end of the file would end the process.
std::string ElfProblem(int file);

}  // namespace autocli
