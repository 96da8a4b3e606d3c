#include "autocli/line/ParameterCheck.h"

#include <fmt/format.h>

#include <span>

#include "autocli/contract/Names.h"
#include "autocli/line/GlobalOptions.h"

namespace autocli {

using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterConstraint;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;
using Parameters = std::span<const std::shared_ptr<ParameterSpec>>;

namespace {

std::string NameProblem(const ParameterSpec& parameter) {
  const std::string& letter = parameter.GetShortName();
  if (!IsPlainWord(parameter.GetLongName())) {
    return "the name is no word of letters, digits and hyphens";
  }
  if (!letter.empty() && (letter.size() > 1 || !IsLetter(letter.front()))) {
    return fmt::format("the short name \"{}\" is no letter", letter);
  }
  return "";
}

/// `whose` says to whom the others belong.
std::string TakenProblem(const ParameterSpec& parameter, Parameters others, const char* whose) {
  const std::string& letter = parameter.GetShortName();
  for (const auto& other : others) {
    if (other->GetLongName() == parameter.GetLongName()) {
      return fmt::format("the name is taken by {}", whose);
    }
    if (!letter.empty() && other->GetShortName() == letter) {
      return fmt::format("the short name \"{}\" is taken by {}", letter, whose);
    }
  }
  return "";
}

std::string RangeProblem(const ParameterConstraint& range, ParameterType type) {
  if (type != ParameterType::Int) {
    return fmt::format("a range is for Int, not for {}", TypeName(type));
  }
  if (range.GetMin() <= range.GetMax()) return "";
  return fmt::format("the range begins at {} and ends at {}", range.GetMin(), range.GetMax());
}

std::string EnumProblem(const ParameterConstraint& enumeration, ParameterType type) {
  if (type != ParameterType::String && type != ParameterType::StringList) {
    return fmt::format("an enumeration is for String and StringList, not for {}", TypeName(type));
  }
  return enumeration.GetValues().empty() ? "the enumeration has no value" : "";
}

std::string ConstraintProblem(const ParameterSpec& parameter) {
  const ParameterConstraint* constraint = parameter.GetConstraint().get();
  if (constraint == nullptr) return "";
  switch (constraint->GetType()) {
    case ParameterConstraintType::IntRange:
      return RangeProblem(*constraint, parameter.GetType());
    case ParameterConstraintType::StringEnum:
      return EnumProblem(*constraint, parameter.GetType());
  }
  return "the constraint is of no known type";
}

/// `before` are the parameters in front of it.
std::string ProblemOf(const ParameterSpec& parameter, Parameters before) {
  if (TypeName(parameter.GetType()) == nullptr) return "it is of no known type";
  std::string problem = NameProblem(parameter);
  if (problem.empty()) problem = TakenProblem(parameter, before, "another parameter");
  if (problem.empty()) {
    problem = TakenProblem(parameter, GlobalOptions().GetParameters(),
                           "an option that every command takes");
  }
  return problem.empty() ? ConstraintProblem(parameter) : problem;
}

}  // namespace

std::string ProblemOf(const InputSpec& spec) {
  const Parameters parameters = spec.GetParameters();
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    const std::string problem = ProblemOf(*parameters[i], parameters.first(i));
    if (problem.empty()) continue;
    return fmt::format("parameter \"{}\": {}", parameters[i]->GetLongName(), problem);
  }
  return "";
}

}  // namespace autocli
