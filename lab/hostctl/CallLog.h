#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "lab/base/File.h"
#include "lab/model/Operations.h"

namespace lab {

using Json = nlohmann::ordered_json;

/// A call of a host control operation that has come to its end.
struct EndedCall {
  const std::string& host;  ///< that it was for; empty when the lab does not say
  OperationName operation;
  const Json& arguments;
  const std::string* error;  ///< null when the operation was done
};

/// The line of one host control operation in the file that $KOREL_LAB_CALLS names:
///   {"time":"2026-01-31T22:59:59.123Z","host":"host1","process":4711,"operation":"RemoveHsknic",
///    "arguments":["hsk1",false,"korel"]}
/// with "error":"..." when the operation threw, and "line":3 for the third line of a batch. The
/// time is that of its end. Without the variable, and while nothing may change, nothing is written.
class CallLog {
 public:
  /// Opens the file, so that one that cannot be written is refused before the operation begins.
  /// Throws KorelCtlException.
  CallLog();

  bool IsOpen() const { return file_.IsOpen(); }
  /// Appends the line in one piece to the open file. Throws KorelCtlException when it cannot be
  /// written.
  void Write(const EndedCall& call);

 private:
  [[noreturn]] void Refuse(const std::string& reason) const;

  std::string path_;
  File file_;
};

}  // namespace lab
