#include "autocli/render/View.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "autocli/base/Escape.h"
#include "autocli/contract/Shape.h"
#include "autocli/render/JsonText.h"

namespace autocli {

using Corvex::MetaObj::MetaBool;
using Corvex::MetaObj::MetaInt;
using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaString;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

namespace {

std::string HintOf(const Hints& hints, const std::string& key) {
  const auto hint = hints.find(key);
  return hint == hints.end() ? "" : hint->second;
}

std::optional<std::size_t> IndexOf(const MetaStruct& record, std::string_view name) {
  const auto& fields = record.GetFields();
  const auto field = std::ranges::find(fields, name, &MetaStruct::Field::name);
  if (field == fields.end()) return std::nullopt;
  return static_cast<std::size_t>(field - fields.begin());
}

std::vector<std::string> AllNames(const MetaStruct& record) {
  std::vector<std::string> names;
  for (const auto& field : record.GetFields()) names.push_back(field.name);
  return names;
}

std::string_view Trimmed(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

}  // namespace

View::View(const MetaObject& declared, const Hints& hints, const std::vector<std::string>& picked) {
  const MetaStruct* record = RecordOf(declared);
  if (record == nullptr) return;
  hasRecords_ = true;
  wrap_ = static_cast<std::size_t>(std::max(0, std::atoi(HintOf(hints, "wrap").c_str())));
  ReadHeader(*record, HintOf(hints, "header:" + record->GetTypeName()));
  dataColumns_ = ColumnsNamed(*record, hints, picked.empty() ? AllNames(*record) : picked);
  const std::string hinted = HintOf(hints, "fields:" + record->GetTypeName());
  // No hint is not a hint at the field without a name.
  if (picked.empty() && !hinted.empty()) {
    columns_ = ColumnsNamed(*record, hints, SplitNames(hinted));
  }
  if (columns_.empty()) columns_ = dataColumns_;
}

std::vector<Column> View::ColumnsNamed(const MetaStruct& record, const Hints& hints,
                                       const std::vector<std::string>& names) const {
  std::vector<Column> columns;
  for (const std::string& name : names) {
    const auto index = IndexOf(record, name);
    if (!index || std::ranges::count(columns, name, &Column::name) > 0) continue;
    const std::string unit = HintOf(hints, "units:" + record.GetTypeName() + "." + name);
    const bool isNumber = record.GetFields()[*index].value->GetType() == MetaType::Int;
    columns.push_back({*index, name, Escaped(name), Escaped(unit), isNumber});
  }
  return columns;
}

void View::ReadHeader(const MetaStruct& record, std::string_view text) {
  std::string pending;
  while (!text.empty()) {
    const std::size_t end = text[0] == '%' ? text.find('%', 1) : std::string_view::npos;
    const auto field =
        end == std::string_view::npos ? std::nullopt : IndexOf(record, text.substr(1, end - 1));
    if (field) {
      header_.push_back({Escaped(pending)});
      header_.push_back({"", field});
      pending.clear();
      text.remove_prefix(end + 1);
    } else {
      pending += text[0];
      text.remove_prefix(1);
    }
  }
  if (!pending.empty()) header_.push_back({Escaped(pending)});
}

void View::AppendHeader(std::string& out, const MetaStruct& record) const {
  for (const auto& [text, field] : header_) {
    out += text;
    if (field) AppendText(out, *record.GetFields()[*field].value);
  }
}

std::vector<std::string> SplitNames(std::string_view text) {
  std::vector<std::string> names;
  while (true) {
    const std::size_t comma = text.find(',');
    names.emplace_back(Trimmed(text.substr(0, comma)));
    if (comma == std::string_view::npos) return names;
    text.remove_prefix(comma + 1);
  }
}

void AppendText(std::string& out, const MetaObject& value) {
  switch (value.GetType()) {
    case MetaType::Bool:
      if (const auto& set = static_cast<const MetaBool&>(value).GetValue()) {
        out += *set ? "true" : "false";
      }
      return;
    case MetaType::Int:
      if (const auto& set = static_cast<const MetaInt&>(value).GetValue()) {
        fmt::format_to(std::back_inserter(out), "{}", *set);
      }
      return;
    case MetaType::String:
      if (const auto& set = static_cast<const MetaString&>(value).GetValue()) {
        AppendEscaped(out, *set);
      }
      return;
    case MetaType::List: {
      const char* separator = "";
      for (const auto& element : static_cast<const MetaList&>(value).GetElements()) {
        out += separator;
        AppendText(out, *element);
        separator = ", ";
      }
      return;
    }
    case MetaType::Struct: {
      std::string json;
      AppendJson(json, value);
      AppendEscaped(out, json);
      return;
    }
  }
}

}  // namespace autocli
