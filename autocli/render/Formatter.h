#pragma once

#include <string>
#include <vector>

#include "autocli/base/Sink.h"
#include "autocli/render/View.h"

namespace autocli {

/// Shows a result in one format. A formatter has no state and knows no command.
class Formatter {
 public:
  /// Writes the result through its view, ended by a line feed where anything is written at all
  /// (JSON: the bare value). `result` is of the shape that the view was made for.
  virtual void Write(const Corvex::MetaObj::MetaObject& result, const View& view,
                     Sink& out) const = 0;

 protected:
  ~Formatter() = default;
};

const Formatter& SimpleFormatter();
const Formatter& TableFormatter();
const Formatter& CsvFormatter();
const Formatter& JsonFormatter();

/// The result is wider as a table than the terminal that `out` writes to.
bool IsTableTooWide(const Corvex::MetaObj::MetaObject& result, const View& view, const Sink& out);

/// "simple", "table", "json" and "csv".
std::vector<std::string> FormatterNames();

/// The formatter of that name; the simple one for any other name.
const Formatter& FormatterNamed(const std::string& name);

}  // namespace autocli
