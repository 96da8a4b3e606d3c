#include "autocli/contract/Shape.h"
#include "autocli/render/Formatter.h"

namespace autocli {

using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
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

/// Records inside a record: a table below the field's name, which ends at the column `wrap`.
void AppendRecords(std::string& out, const MetaList& records, std::size_t wrap) {
  constexpr std::string_view kIndent = "   ";
  Hints hints;
  if (wrap > kIndent.size()) hints["wrap"] = std::to_string(wrap - kIndent.size());
  TextSink table;
  TableFormatter().Write(records, View(records, hints, {}), table);
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
                 std::size_t wrap) {
  out += column.label;
  out += ':';
  const std::size_t end = out.size();
  const MetaObject& value = *record.GetFields()[column.index].value;
  if (value.GetType() == MetaType::List && RecordOf(value) != nullptr) {
    const auto& records = static_cast<const MetaList&>(value);
    out += '\n';
    if (!records.GetElements().empty()) AppendRecords(out, records, wrap);
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
    bool isFirst = true;
    ForEachRecord(result, [&](const MetaStruct& record) {
      if (!isFirst) text += '\n';
      isFirst = false;
      if (view.HasHeader()) {
        view.AppendHeader(text, record);
        text += '\n';
      }
      for (const Column& column : view.GetColumns()) {
        if (view.HasHeader()) text += "   ";
        AppendField(text, column, record, view.GetWrap());
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
