#include <algorithm>

#include "autocli/base/Escape.h"
#include "autocli/render/Formatter.h"

namespace autocli {

using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaStruct;

namespace {

void AppendCell(std::string& out, const Column& column, const MetaStruct& record) {
  const std::size_t start = out.size();
  AppendText(out, *record.GetFields()[column.index].value);
  if (out.size() != start && !column.unit.empty()) {
    out += ' ';
    out += column.unit;
  }
}

/// Pads the cell that begins at `start` of `out` to its column's width.
void Align(std::string& out, std::size_t start, const Column& column, std::size_t width) {
  const std::size_t used = CellWidth(std::string_view(out).substr(start));
  const std::size_t padding = width - std::min(used, width);
  if (column.isNumber) {
    out.insert(start, padding, ' ');
  } else {
    out.append(padding, ' ');
  }
}

/// Appends one row; `appendCell(column)` appends the text of one cell.
template <typename AppendCellOf>
void AppendRow(std::string& out, const View& view, const std::vector<std::size_t>& widths,
               AppendCellOf&& appendCell) {
  const std::size_t row = out.size();
  for (std::size_t i = 0; i < widths.size(); ++i) {
    if (i > 0) out += "  ";
    const std::size_t start = out.size();
    appendCell(i);
    // Nothing follows the last column that would have to stand below its like.
    const Column& column = view.GetColumns()[i];
    if (i + 1 < widths.size() || column.isNumber) Align(out, start, column, widths[i]);
  }
  while (out.size() > row && out.back() == ' ') out.pop_back();
  out += '\n';
}

std::vector<std::size_t> WidthsOf(const MetaObject& result, const View& view) {
  std::vector<std::size_t> widths;
  for (const Column& column : view.GetColumns()) {
    widths.push_back(view.HasTitles() ? CellWidth(column.label) : 0);
  }
  std::string cell;
  ForEachRecord(result, [&](const MetaStruct& record) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      cell.clear();
      AppendCell(cell, view.GetColumns()[i], record);
      widths[i] = std::max(widths[i], CellWidth(cell));
    }
  });
  return widths;
}

class Table final : public Formatter {
 public:
  void Write(const MetaObject& result, const View& view, Sink& out) const override {
    if (!view.HasRecords()) return SimpleFormatter().Write(result, view, out);
    std::string& text = out.Buffer();
    const auto& columns = view.GetColumns();
    const std::vector<std::size_t> widths = WidthsOf(result, view);
    if (view.HasTitles()) {
      AppendRow(text, view, widths, [&](std::size_t i) { text += columns[i].label; });
      AppendRow(text, view, widths, [&](std::size_t i) { text.append(widths[i], '-'); });
    }
    ForEachRecord(result, [&](const MetaStruct& record) {
      AppendRow(text, view, widths, [&](std::size_t i) { AppendCell(text, columns[i], record); });
      out.Drain();
    });
  }
};

}  // namespace

const Formatter& TableFormatter() {
  static constexpr Table kFormatter;
  return kFormatter;
}

}  // namespace autocli
