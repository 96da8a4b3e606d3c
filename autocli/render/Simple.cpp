#include "autocli/contract/Shape.h"
#include "autocli/render/Formatter.h"

namespace autocli {

using Corvex::MetaObj::MetaBool;
using Corvex::MetaObj::MetaInt;
using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaString;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

namespace {

/// Keeps what is written.
class TextSink final : public Sink {
 public:
  std::string text;

 private:
  int Write(std::string_view piece) override {
    text += piece;
    return 0;
  }
};

/// Records inside a record: a table below the field's name, no wider than that with its indent.
/// Only people read it: JSON has such records for programs.
void AppendRecords(std::string& out, const MetaList& records, std::size_t width) {
  constexpr std::string_view kIndent = "   ";
  View view(records, {}, {});
  view.WrapAt(width - kIndent.size());
  TextSink table;
  TableFormatter().Write(records, view, table);
  table.Flush();
  std::string_view rest = table.text;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n') + 1;
    if (end > 1) out += kIndent;
    out += rest.substr(0, end);
    rest.remove_prefix(end);
  }
}

void AppendField(std::string& out, const Column& column, const MetaStruct& record,
                 std::size_t width) {
  out += column.label;
  out += ':';
  const std::size_t end = out.size();
  const MetaObject& value = *record.GetFields()[column.index].value;
  if (value.GetType() == MetaType::List && RecordOf(value) != nullptr) {
    const auto& records = static_cast<const MetaList&>(value);
    out += '\n';
    if (!records.GetElements().empty()) AppendRecords(out, records, width);
    return;
  }
  out += ' ';
  AppendText(out, value);
  if (out.size() == end + 1) {
    out.resize(end);
  } else if (!column.unit.empty()) {
    out += ' ';
    out += column.unit;
  }
  out += '\n';
}

bool IsUnset(const MetaObject& value) {
  switch (value.GetType()) {
    case MetaType::Bool:
      return !static_cast<const MetaBool&>(value).GetValue();
    case MetaType::Int:
      return !static_cast<const MetaInt&>(value).GetValue();
    case MetaType::String:
      return !static_cast<const MetaString&>(value).GetValue();
    case MetaType::Struct:
    case MetaType::List:
      break;
  }
  return false;
}

class Simple final : public Formatter {
 public:
  void Write(const MetaObject& result, const View& view, Sink& out) const override {
    std::string& text = out.Buffer();
    if (!view.HasRecords()) {
      ForEachValue(result, [&](const MetaObject& value) {
        AppendText(text, value);
        text += '\n';
        out.Drain();
      });
      return;
    }
    const bool isForTerminal = out.IsTerminal();
    const std::size_t width = out.GetStyle().width;
    bool isFirst = true;
    ForEachRecord(result, [&](const MetaStruct& record) {
      if (!isFirst) text += '\n';
      isFirst = false;
      if (view.HasHeader()) {
        view.AppendHeader(text, record);
        text += '\n';
      }
      for (const Column& column : view.GetColumns()) {
        // People need no line for what is not there; a program looks for the line.
        if (isForTerminal && IsUnset(*record.GetFields()[column.index].value)) continue;
        if (view.HasHeader()) text += "   ";
        AppendField(text, column, record, width);
      }
      out.Drain();
    });
  }
};

}  // namespace

const Formatter& SimpleFormatter() {
  static constexpr Simple kFormatter;
  return kFormatter;
}

}  // namespace autocli
