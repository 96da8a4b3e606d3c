#include "autocli/render/Formatter.h"
#include "autocli/render/JsonText.h"

namespace autocli {

using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

namespace {

/// The names of the columns as they stand in an object, with what is in front of and after them.
std::vector<std::string> Keys(const View& view) {
  std::vector<std::string> keys;
  for (const Column& column : view.GetDataColumns()) {
    std::string key = keys.empty() ? "{" : ",";
    AppendJsonString(key, column.name);
    keys.push_back(key + ":");
  }
  return keys;
}

void AppendRecord(std::string& out, const View& view, const std::vector<std::string>& keys,
                  const MetaStruct& record) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    out += keys[i];
    AppendJson(out, *record.GetFields()[view.GetDataColumns()[i].index].value);
  }
  out += keys.empty() ? "{}" : "}";
}

class JsonValue final : public Formatter {
 public:
  void Write(const MetaObject& result, const View& view, Sink& out) const override {
    std::string& text = out.Buffer();
    const bool isList = result.GetType() == MetaType::List;
    const auto keys = Keys(view);
    const char* separator = "";
    const auto begin = [&] {
      text += separator;
      separator = ",";
      out.Drain();
    };
    if (isList) text += '[';
    if (view.HasRecords()) {
      ForEachRecord(result, [&](const MetaStruct& record) {
        begin();
        AppendRecord(text, view, keys, record);
      });
    } else {
      ForEachValue(result, [&](const MetaObject& value) {
        begin();
        AppendJson(text, value);
      });
    }
    if (isList) text += ']';
  }
};

}  // namespace

const Formatter& JsonFormatter() {
  static constexpr JsonValue kFormatter;
  return kFormatter;
}

}  // namespace autocli
