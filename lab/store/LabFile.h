#pragma once

#include <string>

#include "platform/hostctl/KorelCtlException.h"

namespace lab {

/// The file is there but cannot serve as a lab: damaged, of a newer version, or something else.
class UnusableLab : public Tovrin::Lib::Korel::KorelCtlException {
 public:
  using KorelCtlException::KorelCtlException;
};

/// Marks a lab in the SQLite header ("KoLb").
inline constexpr unsigned kApplicationId = 0x4b6f4c62;

/// The absolute path of the lab: $KOREL_LAB, else $XDG_STATE_HOME/korel/lab.db, else
/// $HOME/.local/state/korel/lab.db. Throws KorelCtlException naming a variable that is of no use.
std::string LabPath();

/// False while a shell asks for words to complete (AUTOCLI_COMPLETING is set): then nothing of the
/// lab changes, nor is it made, and no call is logged.
bool MayChange();

/// Looks at the file before SQLite touches it, since opening a foreign database may change it.
/// True when there is a lab, of whatever version; false when there is no file, an empty one, or one
/// that is empty again because its first transaction was not finished.
/// Throws UnusableLab for anything else, KorelCtlException when the path cannot be a file.
bool HoldsLab(const std::string& path);

/// Makes the missing directories above `path`, for their owner alone.
void MakeDirectoryOf(const std::string& path);

/// Renames an unusable lab and its journals to "PATH.old...", so that a new one can be made.
void SetAside(const std::string& path);

/// The sentence that ends the message about an unusable file.
std::string HowToReplace(const std::string& path);

}  // namespace lab
