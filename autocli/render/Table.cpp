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

/// The text, cut at blanks into lines that are no wider than `width`, but for longer words.
std::vector<std::string> Lines(const std::string& text, std::size_t width) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    const std::string word = text.substr(begin, end - begin);
    if (!lines.empty() && CellWidth(lines.back() + " " + word) <= width) {
      lines.back() += " " + word;
    } else {
      lines.push_back(word);
    }
    begin = end + 1;
  }
  return lines;
}

/// How the table is laid out: for a terminal, titles are no wider than the values below them.
struct Layout {
  std::vector<std::size_t> widths;
  std::vector<std::vector<std::string>> titles;  ///< the lines of each column's
};

std::vector<std::size_t> WidthsOfValues(const MetaObject& result, const View& view) {
  std::vector<std::size_t> widths(view.GetColumns().size());
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

Layout LayoutOf(const MetaObject& result, const View& view, bool isForTerminal) {
  Layout layout = {WidthsOfValues(result, view), {}};
  if (!view.HasTitles()) return layout;
  for (std::size_t i = 0; i < layout.widths.size(); ++i) {
    const std::string& label = view.GetColumns()[i].label;
    std::size_t& width = layout.widths[i];
    layout.titles.push_back(isForTerminal ? Lines(label, width) : std::vector{label});
    for (const std::string& line : layout.titles.back()) width = std::max(width, CellWidth(line));
  }
  return layout;
}

/// The last line of each title stands right above the rule.
void AppendTitles(std::string& out, const View& view, const Layout& layout) {
  std::size_t most = 0;
  for (const auto& title : layout.titles) most = std::max(most, title.size());
  for (std::size_t row = 0; row < most; ++row) {
    AppendRow(out, view, layout.widths, [&](std::size_t i) {
      const auto& title = layout.titles[i];
      if (row + title.size() >= most) out += title[row + title.size() - most];
    });
  }
  AppendRow(out, view, layout.widths, [&](std::size_t i) { out.append(layout.widths[i], '-'); });
}

class Table final : public Formatter {
 public:
  void Write(const MetaObject& result, const View& view, Sink& out) const override {
    if (!view.HasRecords()) return SimpleFormatter().Write(result, view, out);
    std::string& text = out.Buffer();
    const auto& columns = view.GetColumns();
    const Layout layout = LayoutOf(result, view, out.IsTerminal());
    if (view.HasTitles()) AppendTitles(text, view, layout);
    ForEachRecord(result, [&](const MetaStruct& record) {
      AppendRow(text, view, layout.widths,
                [&](std::size_t i) { AppendCell(text, columns[i], record); });
      out.Drain();
    });
  }
};

}  // namespace

const Formatter& TableFormatter() {
  static constexpr Table kFormatter;
  return kFormatter;
}

bool IsTableTooWide(const MetaObject& result, const View& view, const Sink& out) {
  if (out.GetColumns() == 0 || !view.HasRecords()) return false;
  std::size_t total = 0;
  for (const std::size_t width : LayoutOf(result, view, true).widths) {
    total += (total == 0 ? 0 : 2) + width;
  }
  return total > out.GetColumns();
}

}  // namespace autocli
