#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lab/memory/Words.h"

namespace lab {

/// One host control operation, as the call log has it.
struct LoggedCall {
  std::string operation;
  std::string arguments;  ///< a JSON array
  std::optional<std::string> error;
};

/// What came of a command that was tried.
struct Trial {
  int status = -1;                    ///< its exit status
  std::vector<std::string> output;    ///< its standard output, line by line
  std::vector<std::string> errors;    ///< its standard error, line by line
  std::vector<LoggedCall> calls;      ///< the host control operations, in their order
  std::vector<std::string> programs;  ///< command lines for programs of the host, which did not run
  std::vector<FieldChange> changes;   ///< of the lab
};

/// Runs `autocli WORDS...` in a process of its own, on a copy of the lab and of its hosts' files
/// that is taken within one transaction and goes afterwards. The lab and the call log are not
/// written to, and no program of the host is run. Throws KorelCtlException when that cannot be
/// arranged.
Trial TryCommand(const std::vector<std::string>& words);

/// Throws KorelCtlException when this process is itself what is being tried; `what` cannot be,
/// `why` says it.
void RefuseInTrial(const char* what, const char* why);

}  // namespace lab
