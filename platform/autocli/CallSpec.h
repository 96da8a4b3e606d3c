#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/autocli/MetaObj.h"

/// What a command declares about a call (its parameters, the shape of its result), and the call
/// itself (the parsed command line, the result being built).
namespace Corvex::CallSpec {

/// How an option is written and which value it carries.
enum class ParameterType {
  String = 0,      ///< one text
  Int = 1,         ///< one 64-bit signed decimal integer
  Bool = 2,        ///< one value true or false
  Flag = 3,        ///< present or absent, without a value
  StringList = 4,  ///< may be given several times; all texts are collected
};

enum class ParameterConstraintType { IntRange = 1, StringEnum = 3 };

/// Limits the values of a parameter; the framework refuses others before the command runs.
class ParameterConstraint {
 public:
  struct EnumValue {
    std::string value;
    std::string description;  ///< empty when there is none
  };

  static std::shared_ptr<ParameterConstraint> New(ParameterConstraintType type);

  /// Inclusive bounds of an Int parameter.
  void SetIntRange(std::int64_t min, std::int64_t max);
  /// Adds one allowed value of a String parameter; help lists them in this order.
  void AddStringEnum(const std::string& value, const std::string& description = "");

  ParameterConstraintType GetType() const { return type_; }
  std::int64_t GetMin() const { return min_; }
  std::int64_t GetMax() const { return max_; }
  const std::vector<EnumValue>& GetValues() const { return values_; }

  explicit ParameterConstraint(ParameterConstraintType type) : type_(type) {}

 private:
  ParameterConstraintType type_;
  std::int64_t min_ = INT64_MIN;
  std::int64_t max_ = INT64_MAX;
  std::vector<EnumValue> values_;
};

/// One declared parameter.
class ParameterSpec {
 public:
  /// `longName` is what follows the two hyphens, and the key under which Input has the value.
  static std::shared_ptr<ParameterSpec> New(const std::string& longName, ParameterType type);

  /// One letter, written with one hyphen; empty for none.
  void SetShortName(const std::string& shortName) { shortName_ = shortName; }
  /// Help text. "%ENUM%" stands for the allowed values, "%FULLENUM%" for a line per value with its
  /// description, each line ended by a line feed.
  void SetDescription(const std::string& description) { description_ = description; }
  /// A command line that lacks a required parameter is refused before the command runs.
  void SetRequired(bool required) { required_ = required; }
  void SetConstraint(std::shared_ptr<ParameterConstraint> constraint) {
    constraint_ = std::move(constraint);
  }

  const std::string& GetLongName() const { return longName_; }
  ParameterType GetType() const { return type_; }
  const std::string& GetShortName() const { return shortName_; }
  const std::string& GetDescription() const { return description_; }
  bool IsRequired() const { return required_; }
  /// Null when there is none.
  const std::shared_ptr<ParameterConstraint>& GetConstraint() const { return constraint_; }

  ParameterSpec(std::string longName, ParameterType type)
      : longName_(std::move(longName)), type_(type) {}

 private:
  std::string longName_;
  ParameterType type_;
  std::string shortName_;
  std::string description_;
  bool required_ = false;
  std::shared_ptr<ParameterConstraint> constraint_;
};

/// The parameters of a command, in the order in which help lists them. A command is refused as a
/// whole, with a message that names the parameter, when
/// - a long name is no word of letters, digits and hyphens, or a short one no letter;
/// - a name is taken, by another parameter or an option that every command takes;
/// - a constraint does not fit its parameter's type, allows no value, or has its bounds the wrong
///   way round.
class InputSpec {
 public:
  static std::shared_ptr<InputSpec> New();

  /// Throws std::invalid_argument when `parameter` is null.
  void AddParameter(std::shared_ptr<ParameterSpec> parameter);

  const std::vector<std::shared_ptr<ParameterSpec>>& GetParameters() const { return parameters_; }

 private:
  std::vector<std::shared_ptr<ParameterSpec>> parameters_;
};

/// The shape of a command's result.
class OutputSpec {
 public:
  static std::shared_ptr<OutputSpec> New();

  /// A prototype: only its types and names count, not its values.
  void SetRootObject(MetaObj::MetaObjectPtr prototype) { root_ = std::move(prototype); }
  const MetaObj::MetaObjectPtr& GetRootObject() const { return root_; }

 private:
  MetaObj::MetaObjectPtr root_;
};

/// The parsed command line. Names are long names.
class Input {
 public:
  using Value = std::variant<bool, std::int64_t, std::string, std::vector<std::string>>;

  static std::shared_ptr<Input> New();

  /// The option was given; false for a name that the command did not declare.
  bool HasParameter(const std::string& name) const;
  /// The Flag option was given; false for a name that the command did not declare.
  bool IsFlagSet(const std::string& name) const;

  // The others throw std::logic_error, whether the option was given or not, when the command did
  // not declare it, or declared it with another type; so does IsFlagSet for another type.

  /// Value of a String option; empty when absent.
  std::string GetParameter(const std::string& name) const;
  /// Value of an Int option; 0 when absent.
  std::int64_t GetParameterInt(const std::string& name) const;
  /// Value of a Bool option; false when absent.
  bool GetParameterBool(const std::string& name) const;
  /// Replaces `values` by all values of a StringList option in command-line order; none when
  /// absent.
  void GetParameterList(const std::string& name, std::vector<std::string>& values) const;

  /// For whoever parses: from here on these options can be asked for.
  void Declare(const InputSpec& spec);
  /// For whoever parses: gives an option that was declared its value; a flag is a true bool.
  /// Throws std::logic_error when it was not declared.
  void SetParameter(const std::string& name, Value value);

 private:
  struct Parameter {
    ParameterType type;
    std::optional<Value> value;
  };

  template <typename Type>
  Type Get(const std::string& name, ParameterType type) const;

  std::map<std::string, Parameter> parameters_;
};

/// The result being built: at most one root object, and any number of error messages beside it.
class Output {
 public:
  static std::shared_ptr<Output> New();

  /// The result; replaces an earlier one.
  void SetRootObject(MetaObj::MetaObjectPtr root) { root_ = std::move(root); }
  /// Appends one error message, shown to the user as it stands.
  void AddErrorMessage(const std::string& message) { errors_.push_back(message); }

  /// Null when none was set.
  const MetaObj::MetaObjectPtr& GetRootObject() const { return root_; }
  const std::vector<std::string>& GetErrorMessages() const { return errors_; }

 private:
  MetaObj::MetaObjectPtr root_;
  std::vector<std::string> errors_;
};

}  // namespace Corvex::CallSpec
