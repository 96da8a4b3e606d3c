#include <algorithm>
#include <numeric>

#include "autocli/base/Escape.h"
#include "autocli/render/Formatter.h"

namespace autocli {

using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaStruct;

namespace {

constexpr std::size_t kGap = 2;
/// As narrow as a column that is broken gets.
constexpr std::size_t kLeast = 8;

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

std::size_t WidthOf(const Layout& layout) {
  return std::accumulate(layout.widths.begin(), layout.widths.end(),
                         kGap * (layout.widths.size() - 1));
}

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

bool EndsPiece(char c) { return c == ' ' || c == ','; }

/// The width of the longest piece that no blank or comma lets a line end in.
std::size_t LongestPiece(std::string_view text) {
  std::size_t longest = 0;
  while (!text.empty()) {
    const auto end = std::ranges::find_if(text, EndsPiece);
    const auto size = static_cast<std::size_t>(end - text.begin());
    const bool hasComma = end != text.end() && *end == ',';
    longest = std::max(longest, CellWidth(text.substr(0, size)) + (hasComma ? 1 : 0));
    text.remove_prefix(std::min(size + 1, text.size()));
  }
  return longest;
}

/// The width of each column in which no piece of its cells is cut.
std::vector<std::size_t> PieceWidths(const MetaObject& result, const View& view) {
  std::vector<std::size_t> widths(view.GetColumns().size(), kLeast);
  std::string cell;
  ForEachRecord(result, [&](const MetaStruct& record) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      cell.clear();
      AppendCell(cell, view.GetColumns()[i], record);
      widths[i] = std::max(widths[i], LongestPiece(cell));
    }
  });
  return widths;
}

/// Takes a cell's width from the widest of those columns that are wider than `least`. False when
/// none is.
bool NarrowOne(std::vector<std::size_t>& widths, const std::vector<std::size_t>& least) {
  std::size_t widest = widths.size();
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const bool isWider = widest == widths.size() || widths[i] > widths[widest];
    if (widths[i] > least[i] && isWider) widest = i;
  }
  if (widest == widths.size()) return false;
  --widths[widest];
  return true;
}

/// Makes the table as narrow as it is to be, first where only blanks and commas are broken at, and
/// as long as the columns stay legible.
void Narrow(std::vector<std::size_t>& widths, const std::vector<std::size_t>& pieces,
            std::size_t wrap) {
  const std::vector<std::size_t> least(widths.size(), kLeast);
  const std::size_t gaps = kGap * (widths.size() - 1);
  while (std::accumulate(widths.begin(), widths.end(), gaps) > wrap) {
    if (!NarrowOne(widths, pieces) && !NarrowOne(widths, least)) return;
  }
}

/// The bytes of the next character of an escaped text.
std::size_t CharacterSize(std::string_view text) {
  std::size_t size = 1;
  while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xc0U) == 0x80) ++size;
  return size;
}

/// Takes from the text what fits the width: to its last blank, to its last comma, or as it comes.
std::string TakeLine(std::string_view& text, std::size_t width) {
  std::size_t end = 0;
  std::size_t last = 0;
  while (end < text.size()) {
    const std::size_t next = end + CharacterSize(text.substr(end));
    if (end > 0 && CellWidth(text.substr(0, next)) > width) break;
    if (EndsPiece(text[end])) last = next;
    end = next;
  }
  if (end < text.size() && text[end] != ' ' && last > 0) end = last;
  std::string line(text.substr(0, end));
  text.remove_prefix(end);
  while (line.ends_with(' ')) line.pop_back();
  while (text.starts_with(' ')) text.remove_prefix(1);
  return line;
}

/// One row whose cells take as many lines as they need.
void AppendWrapped(std::string& out, const View& view, const std::vector<std::size_t>& widths,
                   std::vector<std::string> cells) {
  std::vector<std::string_view> rests(cells.begin(), cells.end());
  do {
    AppendRow(out, view, widths, [&](std::size_t i) { out += TakeLine(rests[i], widths[i]); });
  } while (std::ranges::any_of(rests, [](std::string_view rest) { return !rest.empty(); }));
}

/// `breaksTitles`: they are no wider than the values below them. In a table that may be only so
/// wide they are whole where there is room.
Layout LayoutOf(const MetaObject& result, const View& view, bool breaksTitles) {
  Layout layout = {WidthsOfValues(result, view), {}};
  if (view.GetWrap() > 0) Narrow(layout.widths, PieceWidths(result, view), view.GetWrap());
  if (!view.HasTitles()) return layout;
  for (std::size_t i = 0; i < layout.widths.size(); ++i) {
    const std::string& label = view.GetColumns()[i].label;
    std::size_t& width = layout.widths[i];
    layout.titles.push_back(breaksTitles ? Lines(label, width) : std::vector{label});
    for (const std::string& line : layout.titles.back()) width = std::max(width, CellWidth(line));
  }
  const bool isTooWide = view.GetWrap() > 0 && WidthOf(layout) > view.GetWrap();
  return isTooWide && !breaksTitles ? LayoutOf(result, view, true) : layout;
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
      if (view.GetWrap() > 0) {
        std::vector<std::string> cells(columns.size());
        for (std::size_t i = 0; i < cells.size(); ++i) AppendCell(cells[i], columns[i], record);
        AppendWrapped(text, view, layout.widths, std::move(cells));
      } else {
        AppendRow(text, view, layout.widths,
                  [&](std::size_t i) { AppendCell(text, columns[i], record); });
      }
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
  return WidthOf(LayoutOf(result, view, true)) > out.GetColumns();
}

}  // namespace autocli
