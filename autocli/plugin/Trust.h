#pragma once

#include <string>

#include "autocli/base/File.h"

namespace autocli {

/// Why a file or folder cannot be used.
struct Trouble {
  std::string reason;       ///< empty when it can
  std::string remedy = {};  ///< the command that mends it; empty when there is none
};

/// Whether others than root and the user may have a hand in what is loaded.
enum class Trust { OwnersOnly, Anybody };

/// The trouble that the file is of no use where it is.
Trouble Unusable(const std::string& path, const std::string& reason);

/// Whether somebody other than root or the user could have written the open file or folder.
Trouble TrustTrouble(int file, const std::string& path, Trust trust);

/// Opens the file for reading, `name` being relative to the open folder (AT_FDCWD is the current
/// one) and `path` what people know it by. Without trouble `file` is open. One that is no regular
/// file is not opened.
Trouble OpenTrusted(int folder, const std::string& name, const std::string& path, Trust trust,
                    File& file);

}  // namespace autocli
