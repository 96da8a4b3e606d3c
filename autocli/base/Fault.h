#pragma once

#include <string>

namespace autocli {

/// Whose fault a fault is.
enum class FaultKind {
  Command,   ///< the command reported an error
  Usage,     ///< the command line was refused
  Plugin,    ///< a plug-in could not be loaded
  Internal,  ///< the command broke its contract, or its result could not be written
};

struct Fault {
  FaultKind kind;
  std::string message;
};

/// What a fault of that kind is in JSON, the exit status that it asks for, and what help says of
/// it.
struct FaultMeaning {
  const char* name;
  int status;
  const char* text;
};

constexpr FaultMeaning MeaningOf(FaultKind kind) {
  switch (kind) {
    case FaultKind::Command:
      return {"command", 1, "the command reported an error"};
    case FaultKind::Usage:
      return {"usage", 2, "the command line was refused"};
    case FaultKind::Plugin:
      return {"plugin", 3, "a plug-in could not be loaded"};
    case FaultKind::Internal:
      break;
  }
  return {"internal", 4, "the command broke, or its result could not be written"};
}

}  // namespace autocli
