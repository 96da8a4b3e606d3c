// A value of any shape that commands may answer with, through every formatter.
//
// - JSON parses back to the value, on one line; a text that is no UTF-8 has U+FFFD where it is not.
// - csv parses back, by a reader of this file's own, to a row of titles and one row a record, with
//   the cells as texts; a text that may not be shown as it is, escaped.
// - A table has a line for each record below its two lines of titles, with no blank at a line's
//   end.
// - Whatever headers, units and field names say, no text format writes control characters but line
//   feeds, or anything that is no UTF-8.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "autocli/render/Formatter.h"
#include "fuzz/Support.h"

namespace {

using namespace Corvex::MetaObj;
using Json = nlohmann::ordered_json;
using Cells = std::vector<std::string>;

constexpr const char* kNames[] = {"Name",       "Sp ace", "co,mma", "quo\"te",
                                  "line\nfeed", "\u00fc", ""};

MetaObjectPtr Value(FuzzedDataProvider& data, MetaType type, const MetaStruct* prototype = nullptr);

std::shared_ptr<MetaList> Texts(FuzzedDataProvider& data) {
  auto list = MetaList::New(MetaType::String);
  while (list->GetElements().size() < 5 && data.ConsumeBool()) {
    list->Add(data.ConsumeRandomLengthString(20));
  }
  return list;
}

/// A record of the prototype's shape.
std::shared_ptr<MetaStruct> Record(FuzzedDataProvider& data, const MetaStruct& prototype) {
  auto record = MetaStruct::New(prototype.GetTypeName());
  for (const auto& [name, value] : prototype.GetFields()) {
    const auto* inner = dynamic_cast<const MetaStruct*>(value.get());
    record->SetField(name, Value(data, value->GetType(), inner));
  }
  return record;
}

/// A value of that type; a record is like the prototype.
MetaObjectPtr Value(FuzzedDataProvider& data, MetaType type, const MetaStruct* prototype) {
  const bool isSet = data.ConsumeIntegralInRange(0, 7) != 0;
  switch (type) {
    case MetaType::Bool:
      return isSet ? MetaBool::New(data.ConsumeBool()) : MetaBool::New();
    case MetaType::Int:
      return isSet ? MetaInt::New(data.ConsumeIntegral<std::int64_t>()) : MetaInt::New();
    case MetaType::String:
      return isSet ? MetaString::New(data.ConsumeRandomLengthString(40)) : MetaString::New();
    case MetaType::List:
      return Texts(data);
    case MetaType::Struct:
      return Record(data, *prototype);
  }
  return nullptr;
}

/// A record to be the prototype of others; one of its fields may be a record again.
std::shared_ptr<MetaStruct> Prototype(FuzzedDataProvider& data, bool isInner) {
  auto prototype = MetaStruct::New("Type");
  prototype->SetField("First", Value(data, MetaType::String));
  const int more = data.ConsumeIntegralInRange(0, isInner ? 1 : 4);
  for (int i = 0; i < more; ++i) {
    const auto type = static_cast<MetaType>(data.ConsumeIntegralInRange(0, 4));
    const auto inner =
        type == MetaType::Struct && !isInner ? Prototype(data, true) : MetaStruct::New("Empty");
    prototype->SetField(data.PickValueInArray(kNames), Value(data, type, inner.get()));
  }
  return prototype;
}

MetaObjectPtr Result(FuzzedDataProvider& data) {
  const auto prototype = Prototype(data, false);
  const int kind = data.ConsumeIntegralInRange(0, 5);
  if (kind < 5) return Value(data, static_cast<MetaType>(kind), prototype.get());
  auto list = MetaList::New(MetaType::Struct, prototype);
  while (list->GetElements().size() < 5 && data.ConsumeBool()) list->Add(Record(data, *prototype));
  return list;
}

std::string Rendered(const char* format, const MetaObject& result, const autocli::View& view) {
  fuzz::MemorySink sink;
  autocli::FormatterNamed(format).Write(result, view, sink);
  return sink.Text();
}

bool Matches(const Json& json, const MetaObject& value);

bool MatchesRecord(const Json& json, const MetaStruct& record) {
  if (!json.is_object() || json.size() != record.GetFields().size()) return false;
  auto item = json.begin();
  return std::ranges::all_of(record.GetFields(), [&](const auto& field) {
    const bool isSame = item.key() == field.name && Matches(item.value(), *field.value);
    ++item;
    return isSame;
  });
}

bool Matches(const Json& json, const MetaObject& value) {
  const auto matchesSet = [&](const auto& set) {
    return set ? json == Json(*set) : json.is_null();
  };
  switch (value.GetType()) {
    case MetaType::Bool:
      return matchesSet(static_cast<const MetaBool&>(value).GetValue());
    case MetaType::Int:
      return matchesSet(static_cast<const MetaInt&>(value).GetValue());
    case MetaType::String: {
      const auto& set = static_cast<const MetaString&>(value).GetValue();
      if (!set || fuzz::IsUtf8(*set)) return matchesSet(set);
      return json.is_string() && json.get<std::string>().find("\ufffd") != std::string::npos;
    }
    case MetaType::Struct:
      return MatchesRecord(json, static_cast<const MetaStruct&>(value));
    case MetaType::List: {
      const auto& elements = static_cast<const MetaList&>(value).GetElements();
      const auto matches = [](const Json& one, const auto& element) {
        return Matches(one, *element);
      };
      return json.is_array() && std::ranges::equal(json, elements, matches);
    }
  }
  return false;
}

void RequireJson(const MetaObject& result, const autocli::View& view) {
  const std::string text = Rendered("json", result, view);
  fuzz::RequirePrintable(text);
  fuzz::Require(text.find('\n') == std::string::npos, "JSON is one line", text);
  const Json json = Json::parse(text, nullptr, false);
  fuzz::Require(Matches(json, result), "JSON parses back to the value", text);
}

/// A cell at the beginning of the text, which loses it.
std::string TakeCell(std::string_view& text) {
  std::string cell;
  const bool isQuoted = text.starts_with('"');
  if (isQuoted) text.remove_prefix(1);
  while (true) {
    fuzz::Require(!text.empty(), "a cell ends", cell);
    const bool isPair = isQuoted && text.starts_with("\"\"");
    const bool isEnd = isQuoted ? text[0] == '"' && !isPair : text[0] == ',' || text[0] == '\n';
    if (isEnd) break;
    fuzz::Require(isQuoted || text[0] != '"', "a quotation mark is in a quoted cell", cell);
    cell += text[0];
    text.remove_prefix(isPair ? 2 : 1);
  }
  if (isQuoted) text.remove_prefix(1);
  return cell;
}

std::vector<Cells> ReadCsv(std::string_view text) {
  std::vector<Cells> rows;
  bool isRowNew = true;
  while (!text.empty()) {
    if (isRowNew) rows.emplace_back();
    rows.back().push_back(TakeCell(text));
    fuzz::Require(text.starts_with(',') || text.starts_with('\n'), "a cell is followed by more");
    isRowNew = text[0] == '\n';
    text.remove_prefix(1);
  }
  return rows;
}

/// What csv has of a value: texts as they are.
std::string CellOf(const MetaObject& value) {
  if (const auto* text = dynamic_cast<const MetaString*>(&value)) {
    return text->GetValue().value_or("");
  }
  std::string cell;
  if (value.GetType() == MetaType::List) {
    const char* separator = "";
    for (const auto& element : static_cast<const MetaList&>(value).GetElements()) {
      cell += separator + CellOf(*element);
      separator = ", ";
    }
    return cell;
  }
  autocli::AppendText(cell, value);
  return cell;
}

/// The records of the result, or its bare values, each with the texts of its cells.
std::vector<Cells> CellsOf(const MetaObject& result, bool hasRecords) {
  std::vector<Cells> rows;
  if (!hasRecords) {
    autocli::ForEachValue(result,
                          [&](const MetaObject& value) { rows.push_back({CellOf(value)}); });
    return rows;
  }
  autocli::ForEachRecord(result, [&](const MetaStruct& record) {
    rows.emplace_back();
    for (const auto& field : record.GetFields()) rows.back().push_back(CellOf(*field.value));
  });
  return rows;
}

void RequireCsv(const MetaObject& result, const autocli::View& view) {
  const std::string text = Rendered("csv", result, view);
  std::vector<Cells> rows = ReadCsv(text);
  if (view.HasRecords()) {
    Cells titles;
    for (const auto& column : view.GetColumns()) titles.push_back(column.name);
    fuzz::Require(!rows.empty() && rows[0] == titles, "csv begins with the titles", text);
    rows.erase(rows.begin());
  }
  fuzz::Require(rows == CellsOf(result, view.HasRecords()), "csv parses back to the cells", text);
}

void RequireText(const MetaObject& result, const autocli::View& view) {
  fuzz::RequirePrintable(Rendered("simple", result, view));
  const std::string table = Rendered("table", result, view);
  fuzz::RequirePrintable(table);
  if (!view.HasRecords()) return;
  std::size_t records = 0;
  autocli::ForEachRecord(result, [&](const MetaStruct&) { ++records; });
  fuzz::Require(static_cast<std::size_t>(std::ranges::count(table, '\n')) == records + 2,
                "a table has a line for each record", table);
  fuzz::Require(table.find(" \n") == std::string::npos, "no blank ends a line", table);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider data(bytes, size);
  const MetaObjectPtr result = Result(data);
  const autocli::Hints hints = {{"header:Type", data.ConsumeRandomLengthString(30)},
                                {"units:Type.First", data.ConsumeRandomLengthString(10)},
                                {"fields:Type", data.ConsumeRandomLengthString(30)}};
  RequireJson(*result, autocli::View(*result, {}, {}));
  RequireCsv(*result, autocli::View(*result, {}, {}));
  RequireText(*result, autocli::View(*result, hints, {}));
  return 0;
}
