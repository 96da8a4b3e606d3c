#include "autocli/render/JsonText.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "autocli/base/Escape.h"

namespace autocli {

using Corvex::MetaObj::MetaBool;
using Corvex::MetaObj::MetaInt;
using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaString;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

namespace {

void AppendStruct(std::string& out, const MetaStruct& record) {
  const char* separator = "{";
  for (const auto& [name, value] : record.GetFields()) {
    out += separator;
    AppendJsonString(out, name);
    out += ':';
    AppendJson(out, *value);
    separator = ",";
  }
  out += record.GetFields().empty() ? "{}" : "}";
}

void AppendList(std::string& out, const MetaList& list) {
  const char* separator = "[";
  for (const auto& element : list.GetElements()) {
    out += separator;
    AppendJson(out, *element);
    separator = ",";
  }
  out += list.GetElements().empty() ? "[]" : "]";
}

void AppendCodeUnit(std::string& out, std::int32_t unit) {
  fmt::format_to(std::back_inserter(out), "\\u{:04x}", unit);
}

/// JSON may hold characters as they are that a terminal would obey. `json` is valid.
void AppendShown(std::string& out, std::string_view json) {
  while (!json.empty()) {
    const auto [code, size] = FirstOf(json);
    if (IsShown(code)) {
      out += json.substr(0, size);
    } else if (code < 0x10000) {
      AppendCodeUnit(out, code);
    } else {
      AppendCodeUnit(out, 0xd7c0 + (code >> 10));
      AppendCodeUnit(out, 0xdc00 + (code & 0x3ff));
    }
    json.remove_prefix(size);
  }
}

}  // namespace

void AppendJsonString(std::string& out, std::string_view text) {
  // Nearly all texts are these, and a JSON object for each of a million cells takes its time.
  const auto isPlain = [](char c) { return c >= 0x20 && c < 0x7f && c != '"' && c != '\\'; };
  if (std::ranges::all_of(text, isPlain)) {
    out += '"';
    out += text;
    out += '"';
    return;
  }
  using Json = nlohmann::ordered_json;
  AppendShown(out, Json(text).dump(-1, ' ', false, Json::error_handler_t::replace));
}

void AppendJson(std::string& out, const MetaObject& value) {
  switch (value.GetType()) {
    case MetaType::Bool: {
      const auto& set = static_cast<const MetaBool&>(value).GetValue();
      out += !set ? "null" : *set ? "true" : "false";
      return;
    }
    case MetaType::Int: {
      const auto& set = static_cast<const MetaInt&>(value).GetValue();
      if (!set) {
        out += "null";
      } else {
        fmt::format_to(std::back_inserter(out), "{}", *set);
      }
      return;
    }
    case MetaType::String: {
      const auto& set = static_cast<const MetaString&>(value).GetValue();
      if (!set) {
        out += "null";
      } else {
        AppendJsonString(out, *set);
      }
      return;
    }
    case MetaType::Struct:
      return AppendStruct(out, static_cast<const MetaStruct&>(value));
    case MetaType::List:
      return AppendList(out, static_cast<const MetaList&>(value));
  }
}

}  // namespace autocli
