#pragma once

#include "autocli/tools/ToolCall.h"

namespace autocli {

/// `--reference man|markdown DIR`: writes the reference pages. A file is replaced as a whole or
/// stays as it was. Returns the exit status.
int ReferenceTool(const ToolCall& call);

}  // namespace autocli
