#pragma once

#include <string>

#include "autocli/base/File.h"

namespace autocli {

/// Why the open file or folder is not to be trusted, as somebody other than root or the user could
/// have written it; empty when it is.
std::string TrustProblem(int file);

/// Opens the file for reading, `name` being relative to the open folder; AT_FDCWD is the current
/// one. Returns why that is not done, as it is no regular file or not to be trusted; empty when
/// `file` is open.
std::string OpenTrusted(int folder, const std::string& name, File& file);

}  // namespace autocli
