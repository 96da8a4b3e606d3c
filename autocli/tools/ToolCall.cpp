#include "autocli/tools/ToolCall.h"

#include <fmt/format.h>

#include "autocli/help/Help.h"
#include "autocli/run/Report.h"

namespace autocli {

int RefuseTool(const ToolCall& call, const std::string& message) {
  const int status = WriteFaults({{FaultKind::Usage, message}}, call.err);
  call.err.Buffer() +=
      fmt::format("usage: {0} {1}\ntry: {0} --help\n", kProgram, ToolUsage(call.tool));
  return status;
}

}  // namespace autocli
