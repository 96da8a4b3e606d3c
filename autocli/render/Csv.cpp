#include <algorithm>
#include <string_view>

#include "autocli/render/Formatter.h"

namespace autocli {

using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaStruct;

namespace {

/// Quotes the cell that begins at `start` of `out`, if it needs to be.
void Quote(std::string& out, std::size_t start) {
  // One after the other, for that is quicker than looking for any.
  const bool needs = std::ranges::any_of(
      std::string_view(",\"\n\r"), [&](char c) { return out.find(c, start) != std::string::npos; });
  if (!needs) return;
  const std::string cell = out.substr(start);
  out.resize(start);
  out += '"';
  for (const char c : cell) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

/// Ends the row that begins at `start`. A row of one empty cell would be no row to most readers.
void EndRow(std::string& out, std::size_t start) {
  if (out.size() == start) out += "\"\"";
  out += '\n';
}

template <typename AppendCellOf>
void AppendRow(std::string& out, const View& view, AppendCellOf&& appendCell) {
  const std::size_t row = out.size();
  for (const Column& column : view.GetColumns()) {
    if (&column != &view.GetColumns().front()) out += ',';
    const std::size_t start = out.size();
    appendCell(column);
    Quote(out, start);
  }
  EndRow(out, row);
}

class Csv final : public Formatter {
 public:
  void Write(const MetaObject& result, const View& view, Sink& out) const override {
    std::string& text = out.Buffer();
    // Data goes to a program as it is. To a terminal it goes as a terminal can show it.
    const Spelling spelling = out.IsTerminal() ? Spelling::Escaped : Spelling::Verbatim;
    if (!view.HasRecords()) {
      ForEachValue(result, [&](const MetaObject& value) {
        const std::size_t start = text.size();
        AppendText(text, value, spelling);
        Quote(text, start);
        EndRow(text, start);
        out.Drain();
      });
      return;
    }
    if (view.HasTitles()) {
      AppendRow(text, view, [&](const Column& column) {
        text += spelling == Spelling::Verbatim ? column.name : column.label;
      });
    }
    ForEachRecord(result, [&](const MetaStruct& record) {
      AppendRow(text, view, [&](const Column& column) {
        AppendText(text, *record.GetFields()[column.index].value, spelling);
      });
      out.Drain();
    });
  }
};

}  // namespace

const Formatter& CsvFormatter() {
  static constexpr Csv kFormatter;
  return kFormatter;
}

}  // namespace autocli
