#pragma once

#include "autocli/tools/ToolCall.h"

namespace autocli {

/// `batch FILE|- [--keep-going]`: runs the command lines of a file, or of standard input, in this
/// one process. Each answers with one JSON document on a line of its own, as soon as it is done:
/// the one that --formatter json gives, led by the line's number. Empty lines and comments are
/// skipped. Stops at the first line that fails, unless it is told to keep going. Returns the
/// highest status of the lines.
int BatchTool(const ToolCall& call);

}  // namespace autocli
