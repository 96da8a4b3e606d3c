#include "autocli/contract/Shape.h"

#include <fmt/format.h>

namespace autocli {

using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

const char* KindName(MetaType type) {
  switch (type) {
    case MetaType::Bool:
      return "bool";
    case MetaType::Int:
      return "int";
    case MetaType::String:
      return "string";
    case MetaType::Struct:
      return "struct";
    case MetaType::List:
      return "list";
  }
  return "value of no known kind";
}

const MetaStruct* RecordOf(const MetaObject& prototype) {
  if (prototype.GetType() == MetaType::Struct) return static_cast<const MetaStruct*>(&prototype);
  if (prototype.GetType() != MetaType::List) return nullptr;
  return static_cast<const MetaList&>(prototype).GetPrototype().get();
}

std::vector<std::string> FieldNames(const MetaObject& prototype) {
  std::vector<std::string> names;
  if (const MetaStruct* record = RecordOf(prototype)) {
    for (const auto& field : record->GetFields()) names.push_back(field.name);
  }
  return names;
}

namespace {

std::string StructDifference(const MetaStruct& declared, const MetaStruct& actual) {
  if (declared.GetTypeName() != actual.GetTypeName()) {
    return fmt::format("struct \"{}\" instead of \"{}\"", actual.GetTypeName(),
                       declared.GetTypeName());
  }
  const auto& expected = declared.GetFields();
  const auto& fields = actual.GetFields();
  if (expected.size() != fields.size()) {
    return fmt::format("struct \"{}\" with {} fields instead of {}", actual.GetTypeName(),
                       fields.size(), expected.size());
  }
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (expected[i].name != fields[i].name) {
      return fmt::format("field \"{}\" instead of \"{}\"", fields[i].name, expected[i].name);
    }
    const std::string difference = ShapeDifference(*expected[i].value, *fields[i].value);
    if (!difference.empty()) return fmt::format("field \"{}\": {}", fields[i].name, difference);
  }
  return {};
}

std::string ListDifference(const MetaList& declared, const MetaList& actual) {
  if (declared.GetElementType() != actual.GetElementType()) {
    return fmt::format("list of {} instead of {}", KindName(actual.GetElementType()),
                       KindName(declared.GetElementType()));
  }
  const MetaStruct* prototype = declared.GetPrototype().get();
  if (prototype == nullptr) return {};
  if (prototype->GetTypeName() != actual.GetPrototype()->GetTypeName()) {
    return fmt::format("list of struct \"{}\" instead of \"{}\"",
                       actual.GetPrototype()->GetTypeName(), prototype->GetTypeName());
  }
  for (const auto& element : actual.GetElements()) {
    std::string difference = StructDifference(*prototype, static_cast<const MetaStruct&>(*element));
    if (!difference.empty()) return difference;
  }
  return {};
}

}  // namespace

std::string ShapeDifference(const MetaObject& declared, const MetaObject& actual) {
  if (declared.GetType() != actual.GetType()) {
    return fmt::format("{} instead of {}", KindName(actual.GetType()),
                       KindName(declared.GetType()));
  }
  if (actual.GetType() == MetaType::Struct) {
    return StructDifference(static_cast<const MetaStruct&>(declared),
                            static_cast<const MetaStruct&>(actual));
  }
  if (actual.GetType() == MetaType::List) {
    return ListDifference(static_cast<const MetaList&>(declared),
                          static_cast<const MetaList&>(actual));
  }
  return {};
}

}  // namespace autocli
