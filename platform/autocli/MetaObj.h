#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Typed result values: what a command answers with, and what it declares to answer with.
///
/// All objects are handled through shared handles from their static New(). A scalar made without a
/// value is *unset*: it stands for its type in a declared shape, and for "no value" in a result.
namespace Corvex::MetaObj {

/// The integers that 64 signed bits hold whatever their value. A character is none, nor is a bool.
template <typename T>
concept Integer =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
    !std::same_as<T, wchar_t> && (std::signed_integral<T> || sizeof(T) < sizeof(std::int64_t));

/// Nothing here converts a value into what it is not, such as a pointer into a truth value:
/// other types than these do not compile.
template <typename T, typename... Types>
concept NoneOf = !(std::same_as<T, Types> || ...);

/// Kind of a value; also names the element type of a list.
enum class MetaType { Bool = 0, Int = 1, String = 2, Struct = 3, List = 4 };

/// Base of all values.
class MetaObject {
 public:
  virtual ~MetaObject() = default;
  MetaObject(const MetaObject&) = delete;
  MetaObject& operator=(const MetaObject&) = delete;

  MetaType GetType() const { return type_; }

 private:
  // The kinds are these. Whoever meets one takes its kind for its class.
  friend class MetaBool;
  friend class MetaInt;
  friend class MetaString;
  friend class MetaStruct;
  friend class MetaList;

  explicit MetaObject(MetaType type) : type_(type) {}

  MetaType type_;
};

using MetaObjectPtr = std::shared_ptr<MetaObject>;

/// True or false.
class MetaBool final : public MetaObject {
 public:
  /// Without a value: an unset boolean.
  static std::shared_ptr<MetaBool> New(std::optional<bool> value = std::nullopt);
  template <NoneOf<bool, std::optional<bool>, std::nullopt_t> T>
  static std::shared_ptr<MetaBool> New(const T& value) = delete;
  const std::optional<bool>& GetValue() const { return value_; }

  explicit MetaBool(std::optional<bool> value) : MetaObject(MetaType::Bool), value_(value) {}

 private:
  std::optional<bool> value_;
};

/// A 64-bit signed integer.
class MetaInt final : public MetaObject {
 public:
  /// Without a value: an unset integer.
  static std::shared_ptr<MetaInt> New(std::optional<std::int64_t> value = std::nullopt);
  template <Integer T>
  static std::shared_ptr<MetaInt> New(std::optional<T> value) {
    return value ? New(std::int64_t{*value}) : New();
  }
  template <NoneOf<std::optional<std::int64_t>, std::nullopt_t> T>
  requires(!Integer<T>) static std::shared_ptr<MetaInt> New(const T& value) = delete;
  const std::optional<std::int64_t>& GetValue() const { return value_; }

  explicit MetaInt(std::optional<std::int64_t> value) : MetaObject(MetaType::Int), value_(value) {}

 private:
  std::optional<std::int64_t> value_;
};

/// A text. Any bytes are allowed; formatters see to it that they are shown safely.
class MetaString final : public MetaObject {
 public:
  /// Without a value: an unset text, which is not the same as an empty one.
  static std::shared_ptr<MetaString> New(std::optional<std::string> value = std::nullopt);
  /// Throws std::invalid_argument when `value` is null.
  static std::shared_ptr<MetaString> New(const char* value);
  static std::shared_ptr<MetaString> New(std::nullptr_t) = delete;
  const std::optional<std::string>& GetValue() const { return value_; }

  explicit MetaString(std::optional<std::string> value)
      : MetaObject(MetaType::String), value_(std::move(value)) {}

 private:
  std::optional<std::string> value_;
};

/// A record of a named type with named fields, kept in the order in which they were first set.
class MetaStruct final : public MetaObject {
 public:
  struct Field {
    std::string name;
    MetaObjectPtr value;
  };

  /// `typeName` is the key of the "header:", "fields:" and "units:" formatter hints.
  static std::shared_ptr<MetaStruct> New(const std::string& typeName);

  /// Adds the field at the end, or replaces the value of the field of that name in its place.
  void SetField(const std::string& name, bool value);
  void SetField(const std::string& name, int value);
  void SetField(const std::string& name, std::int64_t value);
  template <Integer T>
  void SetField(const std::string& name, T value) {
    SetField(name, std::int64_t{value});
  }
  /// Throws std::invalid_argument when `value` is null.
  void SetField(const std::string& name, const char* value);
  void SetField(const std::string& name, std::nullptr_t) = delete;
  void SetField(const std::string& name, const std::string& value);
  /// Throws std::invalid_argument when `value` is null, or holds this record.
  void SetField(const std::string& name, MetaObjectPtr value);
  template <NoneOf<bool> T>
  requires(!Integer<T> && !std::convertible_to<const T&, std::string> &&
           !std::convertible_to<const T&, MetaObjectPtr>) void SetField(const std::string& name,
                                                                        const T& value) = delete;

  const std::string& GetTypeName() const { return typeName_; }
  const std::vector<Field>& GetFields() const { return fields_; }
  /// The value of the field, or null when there is no such field.
  const MetaObject* FindField(const std::string& name) const;

  explicit MetaStruct(std::string typeName)
      : MetaObject(MetaType::Struct), typeName_(std::move(typeName)) {}

 private:
  std::string typeName_;
  std::vector<Field> fields_;
};

/// A list of texts, or of records of one type.
class MetaList final : public MetaObject {
 public:
  /// `elementType` is String or Struct; a list of records needs the prototype of its elements.
  /// Throws std::invalid_argument for anything else.
  static std::shared_ptr<MetaList> New(MetaType elementType,
                                       std::shared_ptr<MetaStruct> prototype = nullptr);

  /// Appends one element. Throws std::invalid_argument when the list is of the other type, when the
  /// element is null, or when the record is not of the prototype's type or holds this list.
  void Add(const std::string& element);
  void Add(const char* element);
  void Add(std::shared_ptr<MetaStruct> element);
  /// Makes room for `count` elements in all; the content stays.
  void Reserve(std::size_t count);

  MetaType GetElementType() const { return elementType_; }
  /// Null for a list of texts.
  const std::shared_ptr<MetaStruct>& GetPrototype() const { return prototype_; }
  const std::vector<MetaObjectPtr>& GetElements() const { return elements_; }

 private:
  MetaList(MetaType elementType, std::shared_ptr<MetaStruct> prototype)
      : MetaObject(MetaType::List), elementType_(elementType), prototype_(std::move(prototype)) {}

  MetaType elementType_;
  std::shared_ptr<MetaStruct> prototype_;
  std::vector<MetaObjectPtr> elements_;
};

}  // namespace Corvex::MetaObj
