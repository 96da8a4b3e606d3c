#pragma once

#include <string>

namespace autocli {

/// Why the open file is no complete shared object for this machine; empty when it is one. The
/// dynamic linker believes what such a file says of itself, so that a false number in it can end
/// the process. Here each number that it uses is held against the others before it does: header,
/// segments, the sections if there are any, the dynamic section and its tables.
///
/// Not every lie can be known: a table that is told shorter than it is looks like a short one, and
/// where a function begins is told by the file alone. Code and data are taken as they are.
std::string ElfProblem(int file);

/// The version that a shared object gives of itself in its package metadata, a note that linkers
/// write; empty when there is none, or when the file cannot be read.
std::string ElfVersion(const std::string& path);

}  // namespace autocli
