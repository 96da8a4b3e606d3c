#pragma once

#include <string>

namespace autocli {

/// Why the open file is no complete shared object for this machine; empty when it is one. Only
/// headers are read: they are held against the file's size, because the dynamic linker maps what
/// they promise, and touching a page beyond the end of the file would end the process.
std::string ElfProblem(int file);

/// The version that a shared object gives of itself in its package metadata, a note that linkers
/// write; empty when there is none, or when the file cannot be read.
std::string ElfVersion(const std::string& path);

}  // namespace autocli
