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

/// What a fault of that kind is in JSON, and the exit status that it asks for.
struct FaultMeaning {
  const char* name;
  int status;
};

constexpr FaultMeaning MeaningOf(FaultKind kind) {
  switch (kind) {
    case FaultKind::Command:
      return {"command", 1};
    case FaultKind::Usage:
      return {"usage", 2};
    case FaultKind::Plugin:
      return {"plugin", 3};
    case FaultKind::Internal:
      return {"internal", 4};
  }
  return {"internal", 4};
}

}  // namespace autocli
