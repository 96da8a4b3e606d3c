#pragma once

#include <string>

namespace autocli {

/// Whose fault a fault is.
enum class FaultKind {
  Command,   ///< the command reported an error
  Usage,     ///< the command line was refused
  Notice,    ///< a plug-in could not be loaded, and the line names nothing that is missing
  Plugin,    ///< a plug-in could not be loaded, and the line names what nobody brought
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
  int status;        ///< 0 when the line could be carried out all the same
  const char* text;  ///< empty for one that has no status
};

constexpr FaultMeaning MeaningOf(FaultKind kind) {
  switch (kind) {
    case FaultKind::Command:
      return {"command", 1, "the command reported an error"};
    case FaultKind::Usage:
      return {"usage", 2, "the command line was refused"};
    case FaultKind::Notice:
      return {"plugin", 0, ""};
    case FaultKind::Plugin:
      return {"plugin", 3, "unknown command, while a plug-in could not be loaded"};
    case FaultKind::Internal:
      break;
  }
  return {"internal", 4, "the command broke, or its result could not be written"};
}

}  // namespace autocli
