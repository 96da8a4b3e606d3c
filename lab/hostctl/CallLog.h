#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "lab/base/File.h"
#include "lab/model/Operations.h"

namespace lab {

using Json = nlohmann::ordered_json;

/// The line of one host control operation in the file that $KOREL_LAB_CALLS names:
///   {"operation":"RemoveHsknic","arguments":["hsk1",false,"korel"]}
/// with "error":"..." when the operation threw. Without the variable, and while nothing may
/// change, nothing is written.
class CallLog {
 public:
  /// Opens the file, so that one that cannot be written is refused before the operation begins.
  /// Throws KorelCtlException.
  CallLog();

  bool IsOpen() const { return file_.IsOpen(); }
  /// Appends the line in one piece to the open file; `error` is null when the operation was done.
  /// Throws KorelCtlException when it cannot be written.
  void Write(OperationName operation, const Json& arguments, const std::string* error);

 private:
  [[noreturn]] void Refuse(const std::string& reason) const;

  std::string path_;
  File file_;
};

}  // namespace lab
