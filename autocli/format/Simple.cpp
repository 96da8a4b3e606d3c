#include "autocli/format/Formatter.h"

namespace autocli {

using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaStruct;

namespace {

void AppendField(std::string& out, const Column& column, const MetaStruct& record) {
  out += column.label;
  out += ':';
  const std::size_t end = out.size();
  out += ' ';
  AppendText(out, *record.GetFields()[column.index].value);
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
        AppendField(text, column, record);
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
