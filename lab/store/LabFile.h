#pragma once

#include <functional>
#include <string>

#include "lab/base/File.h"
#include "platform/hostctl/KorelCtlException.h"

namespace lab {

/// The file is there but cannot serve as a lab: damaged, of a newer version, or something else.
class UnusableLab : public Tovrin::Lib::Korel::KorelCtlException {
 public:
  /// `problem` is a sentence that names the file; of the process's own lab it goes on with how to
  /// replace it.
  UnusableLab(const std::string& path, const std::string& problem);
};

/// Marks a lab in the SQLite header ("KoLb").
inline constexpr unsigned kApplicationId = 0x4b6f4c62;

/// The absolute path of the lab: $KOREL_LAB, else $XDG_STATE_HOME/korel/lab.db, else
/// $HOME/.local/state/korel/lab.db. Throws KorelCtlException naming a variable that is of no use.
std::string LabPath();

/// False while this process completes words for a shell (AUTOCLI_COMPLETING holds its number): then
/// nothing of the lab changes, nor is it made, and no call is logged.
bool MayChange();

/// Throws KorelCtlException: the path names a folder, a pipe or the like.
[[noreturn]] void FailNotFile(const std::string& path);

/// Looks at a file before SQLite touches it, since opening a foreign database may change it.
/// True when there is a lab, of whatever version; false when the file is empty, or is empty again
/// because its first transaction was not finished. Throws UnusableLab for anything else,
/// KorelCtlException when `file` is no regular file.
bool HoldsLab(const File& file, const std::string& path);

/// "has 8192 of its 12288 bytes" when the file is shorter than its header says; else empty. The
/// header counts only while nobody writes.
std::string MissingPart(const File& file);

/// Makes the missing directories above `path`, for their owner alone.
void MakeDirectoryOf(const std::string& path);

/// Renames an unusable lab and its journals to the first free name of "PATH.old", "PATH.old.2"...,
/// so that a new one can be made. Only when `isStillUnusable` says so once nobody else does the
/// same: of several at once one renames, and the others find what it made.
void SetAside(const std::string& path, const std::function<bool()>& isStillUnusable);

}  // namespace lab
