#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "autocli/base/Fault.h"
#include "autocli/base/Sink.h"
#include "autocli/render/View.h"
#include "platform/autocli/MetaObj.h"

namespace autocli {

/// The formatter whose output is the whole report, faults included.
inline constexpr const char* kJson = "json";

/// What a run has to say in the end.
struct Report {
  std::string path;                       ///< of the command
  std::string formatter;                  ///< its name
  bool isSuggested = false;               ///< the formatter is the command's choice, not the user's
  Corvex::MetaObj::MetaObjectPtr result;  ///< null when there is none
  View view;                              ///< of the result
  std::vector<Fault> faults;
  std::size_t batchLine = 0;  ///< number of the line in a batch; 0 outside one
};

/// Writes the report: the result to `out`, a line per fault to `err`; in JSON, one document to
/// `out`. Returns the highest exit status that the faults ask for, 0 without any.
int WriteReport(const Report& report, Sink& out, Sink& err);

/// Writes a text that is the answer itself; in JSON, it is the result of the document.
int WriteAnswer(const std::string& text, Report report, Sink& out, Sink& err);

/// Writes a line for each fault: "error: ", or "warning: " when it has no status, and its message,
/// escaped. Returns StatusOf() them.
int WriteFaults(const std::vector<Fault>& faults, Sink& err);

/// The highest exit status that the faults ask for, 0 without any.
int StatusOf(const std::vector<Fault>& faults);

}  // namespace autocli
