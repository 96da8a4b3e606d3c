#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/autocli/MetaObj.h"

namespace autocli {

/// Formatter hints of a command: "fields:TYPE", "header:TYPE", "units:TYPE.FIELD".
using Hints = std::map<std::string, std::string, std::less<>>;

/// One field of the records, as it is to be shown.
struct Column {
  std::size_t index;  ///< of the field in each record
  std::string name;   ///< as declared
  std::string label;  ///< the name, escaped for text
  std::string unit;   ///< escaped for text; empty for none
  bool isNumber;
};

/// A piece of a header: a text, or the value of a field.
struct HeaderPiece {
  std::string text;  ///< escaped
  std::optional<std::size_t> field = std::nullopt;
};

/// Which part of a result is shown, and how: made once from what the command declares and what the
/// user picked, so that formatters never look at hints. A view belongs to results of the declared
/// shape.
class View {
 public:
  /// A view of bare values.
  View() = default;
  /// `picked` names the fields that the user wants, in that order; empty when none were picked.
  View(const Corvex::MetaObj::MetaObject& declared, const Hints& hints,
       const std::vector<std::string>& picked);

  /// The result is a record or a list of records.
  bool HasRecords() const { return hasRecords_; }
  /// The fields that are shown, in display order.
  const std::vector<Column>& GetColumns() const { return columns_; }
  /// The fields that data formats carry: those picked, else all as declared. Hints are for people.
  const std::vector<Column>& GetDataColumns() const { return dataColumns_; }
  /// Tables and csv begin with the names of the columns.
  bool HasTitles() const { return hasTitles_; }
  void HideTitles() { hasTitles_ = false; }
  /// How wide a table may be: longer cells are broken; 0, as it is at first: as wide as it needs.
  std::size_t GetWrap() const { return wrap_; }
  void WrapAt(std::size_t width) { wrap_ = width; }
  bool HasHeader() const { return !header_.empty(); }
  /// Appends the heading of this record, escaped, without a line feed.
  void AppendHeader(std::string& out, const Corvex::MetaObj::MetaStruct& record) const;

 private:
  std::vector<Column> ColumnsNamed(const Corvex::MetaObj::MetaStruct& record, const Hints& hints,
                                   const std::vector<std::string>& names) const;
  void ReadHeader(const Corvex::MetaObj::MetaStruct& record, std::string_view text);

  bool hasRecords_ = false;
  bool hasTitles_ = true;
  std::vector<Column> columns_;
  std::vector<Column> dataColumns_;
  std::vector<HeaderPiece> header_;
  std::size_t wrap_ = 0;
};

/// The texts between the commas, without the blanks around each.
std::vector<std::string> SplitNames(std::string_view text);

/// As a terminal can show them, or as they are.
enum class Spelling { Escaped, Verbatim };

/// Appends the value as text formats show it: lists joined by ", ", nothing when unset.
void AppendText(std::string& out, const Corvex::MetaObj::MetaObject& value,
                Spelling spelling = Spelling::Escaped);

/// Calls `action` for each record of a result: itself, or its elements.
template <typename Action>
void ForEachRecord(const Corvex::MetaObj::MetaObject& result, Action&& action) {
  using Corvex::MetaObj::MetaList;
  using Corvex::MetaObj::MetaStruct;
  if (result.GetType() == Corvex::MetaObj::MetaType::Struct) {
    action(static_cast<const MetaStruct&>(result));
    return;
  }
  for (const auto& element : static_cast<const MetaList&>(result).GetElements()) {
    action(static_cast<const MetaStruct&>(*element));
  }
}

/// Calls `action` for each bare value of a result without records: itself, or its elements.
template <typename Action>
void ForEachValue(const Corvex::MetaObj::MetaObject& result, Action&& action) {
  using Corvex::MetaObj::MetaList;
  if (result.GetType() != Corvex::MetaObj::MetaType::List) {
    action(result);
    return;
  }
  for (const auto& element : static_cast<const MetaList&>(result).GetElements()) action(*element);
}

}  // namespace autocli
