#include "platform/autocli/MetaObj.h"

#include <algorithm>
#include <stdexcept>

namespace Corvex::MetaObj {

namespace {

constexpr std::size_t kUsualFields = 8;

/// `object` is `value` or somewhere inside it.
bool Holds(const MetaObject& value, const MetaObject& object) {
  if (&value == &object) return true;
  if (value.GetType() == MetaType::Struct) {
    return std::ranges::any_of(
        static_cast<const MetaStruct&>(value).GetFields(),
        [&](const MetaStruct::Field& field) { return Holds(*field.value, object); });
  }
  if (value.GetType() != MetaType::List) return false;
  const auto& list = static_cast<const MetaList&>(value);
  return list.GetPrototype() && (Holds(*list.GetPrototype(), object) ||
                                 std::ranges::any_of(list.GetElements(), [&](const auto& element) {
                                   return Holds(*element, object);
                                 }));
}

std::string TextOf(const char* text) {
  if (text == nullptr) throw std::invalid_argument("a null pointer is no text");
  return text;
}

}  // namespace

std::shared_ptr<MetaBool> MetaBool::New(std::optional<bool> value) {
  return std::make_shared<MetaBool>(value);
}

std::shared_ptr<MetaInt> MetaInt::New(std::optional<std::int64_t> value) {
  return std::make_shared<MetaInt>(value);
}

std::shared_ptr<MetaString> MetaString::New(std::optional<std::string> value) {
  return std::make_shared<MetaString>(std::move(value));
}

std::shared_ptr<MetaString> MetaString::New(const char* value) { return New(TextOf(value)); }

std::shared_ptr<MetaStruct> MetaStruct::New(const std::string& typeName) {
  return std::make_shared<MetaStruct>(typeName);
}

void MetaStruct::SetField(const std::string& name, bool value) {
  SetField(name, MetaBool::New(value));
}

void MetaStruct::SetField(const std::string& name, int value) {
  SetField(name, MetaInt::New(value));
}

void MetaStruct::SetField(const std::string& name, std::int64_t value) {
  SetField(name, MetaInt::New(value));
}

void MetaStruct::SetField(const std::string& name, const char* value) {
  SetField(name, MetaString::New(value));
}

void MetaStruct::SetField(const std::string& name, const std::string& value) {
  SetField(name, MetaString::New(value));
}

void MetaStruct::SetField(const std::string& name, MetaObjectPtr value) {
  if (!value) throw std::invalid_argument("field \"" + name + "\" was given no value object");
  if (Holds(*value, *this)) {
    throw std::invalid_argument("field \"" + name + "\" would hold the record that it is in");
  }
  const auto field = std::ranges::find(fields_, name, &Field::name);
  if (field != fields_.end()) {
    field->value = std::move(value);
  } else {
    if (fields_.empty()) fields_.reserve(kUsualFields);
    fields_.push_back({name, std::move(value)});
  }
}

const MetaObject* MetaStruct::FindField(const std::string& name) const {
  const auto field = std::ranges::find(fields_, name, &Field::name);
  return field == fields_.end() ? nullptr : field->value.get();
}

std::shared_ptr<MetaList> MetaList::New(MetaType elementType,
                                        std::shared_ptr<MetaStruct> prototype) {
  const bool ofTexts = elementType == MetaType::String && !prototype;
  const bool ofRecords = elementType == MetaType::Struct && prototype;
  if (!ofTexts && !ofRecords) {
    throw std::invalid_argument("a list is of texts, or of records with a prototype");
  }
  return std::shared_ptr<MetaList>(new MetaList(elementType, std::move(prototype)));
}

void MetaList::Add(const std::string& element) {
  if (elementType_ != MetaType::String) {
    throw std::invalid_argument("a text does not belong in a list of records");
  }
  elements_.push_back(MetaString::New(element));
}

void MetaList::Add(const char* element) { Add(TextOf(element)); }

void MetaList::Add(std::shared_ptr<MetaStruct> element) {
  if (elementType_ != MetaType::Struct) {
    throw std::invalid_argument("a record does not belong in a list of texts");
  }
  if (!element || element->GetTypeName() != prototype_->GetTypeName()) {
    throw std::invalid_argument("the list takes records of type \"" + prototype_->GetTypeName() +
                                "\" only");
  }
  if (Holds(*element, *this)) throw std::invalid_argument("the record holds the list it is for");
  elements_.push_back(std::move(element));
}

void MetaList::Reserve(std::size_t count) { elements_.reserve(count); }

}  // namespace Corvex::MetaObj
