#pragma once

#include <string>
#include <vector>

#include "lab/memory/Words.h"

namespace lab {

/// Whole labs in files of their own.

/// Writes the bytes to a file, whole or not at all. An existing one is refused, or replaced by
/// `force`; the lab's own file always is refused. Throws KorelCtlException.
void WriteFile(const std::string& path, const std::string& bytes, bool force);

/// What a file holds, which may be a pipe; at most a byte more than a host's file may have. The
/// lab's own file is refused. Throws KorelCtlException.
std::string ReadSmallFile(const std::string& path);

/// Writes the lab, its memory included, to another file, which is a lab too. As WriteFile.
void SaveLab(const std::string& path, bool force);

/// Writes the lab, as the present transaction sees it, into an open file.
void CopyLab(Store& store, int file);

/// Gives this lab the rows of the lab in that file; its own memory stays and has the change.
/// Throws KorelCtlException when the file is no sound lab of this version.
void LoadLab(const std::string& path);

/// What made this lab of the one in the file.
std::vector<FieldChange> DifferenceFrom(const std::string& path);

}  // namespace lab
