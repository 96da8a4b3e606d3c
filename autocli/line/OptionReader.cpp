#include "autocli/line/OptionReader.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/line/ParseOptions.h"
#include "autocli/line/Specs.h"
#include "autocli/line/Value.h"
#include "platform/autocli/Suggest.h"

namespace autocli {

using Corvex::CallSpec::Input;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterType;

void OptionReader::Declare(const InputSpec& spec, const std::shared_ptr<Input>& into) {
  into->Declare(spec);
  for (const auto& parameter : spec.GetParameters()) options_.push_back({parameter, into});
}

std::optional<std::string> OptionReader::NextWord() {
  while (next_ < words_.size()) {
    const std::string& word = words_[next_++];
    if (optionsEnded_ || word.size() < 2 || word[0] != '-') return word;
    if (word == "--") {
      optionsEnded_ = true;
    } else if (word[1] == '-') {
      ReadLong(word);
    } else {
      ReadShort(word);
    }
  }
  StoreLists();
  return std::nullopt;
}

bool OptionReader::IsAnyMissing() const { return std::ranges::any_of(options_, IsMissing); }

void OptionReader::RefuseMissing(const std::string& rest) {
  for (const Option& option : options_) {
    if (IsMissing(option)) {
      const std::string& name = option.spec->GetLongName();
      Refuse(name == rest ? fmt::format("\"{}\" is missing", RestText(name))
                          : fmt::format("required option \"--{}\" is missing", name));
    }
  }
}

OptionReader::Option* OptionReader::FindLong(std::string_view name) {
  const auto option = std::ranges::find_if(
      options_, [&](const Option& candidate) { return candidate.spec->GetLongName() == name; });
  return option == options_.end() ? nullptr : &*option;
}

OptionReader::Option* OptionReader::FindShort(char name) {
  const std::string letter(1, name);
  const auto option = std::ranges::find_if(
      options_, [&](const Option& candidate) { return candidate.spec->GetShortName() == letter; });
  return option == options_.end() ? nullptr : &*option;
}

std::string OptionReader::Closest(const std::string& name, const std::string& hyphens) const {
  std::vector<std::string> names;
  for (const Option& option : options_) names.push_back(hyphens + option.spec->GetLongName());
  return Corvex::Suggest::Closest(name, names);
}

bool OptionReader::IsOption(const std::string& word) {
  if (word == "--") return true;
  if (word.starts_with("--")) return FindLong(word.substr(2, word.find('=') - 2)) != nullptr;
  return word.size() == 2 && word[0] == '-' && FindShort(word[1]) != nullptr;
}

bool OptionReader::NextIsValue() {
  if (next_ == words_.size()) return false;
  return ReadInteger(words_[next_]).has_value() || !IsOption(words_[next_]);
}

void OptionReader::ReadLong(const std::string& word) {
  const std::size_t equals = word.find('=');
  const std::string name = word.substr(0, equals);
  std::optional<std::string> attached;
  if (equals != std::string::npos) attached = word.substr(equals + 1);

  Option* option = FindLong(name.substr(2));
  if (option == nullptr) return ReadUnknown(name, Closest(name, "--"), attached.has_value());
  if (option->spec->GetType() != ParameterType::Flag) return ReadValue(*option, attached);
  if (attached) {
    return Refuse(fmt::format("option \"{}\" takes no value, not \"{}\"", name, *attached));
  }
  ReadFlag(*option);
}

void OptionReader::ReadUnknown(const std::string& name, const std::string& meant, bool hasValue) {
  if (ignoreUnknown_) return;
  Refuse(fmt::format("unknown option \"{}\"{}", name,
                     meant.empty() ? "" : fmt::format(", did you mean \"{}\"?", meant)));
  if (meant.empty() || hasValue) return;
  // The next word is the value of what was meant, no second fault.
  if (FindLong(meant.substr(2))->spec->GetType() != ParameterType::Flag && NextIsValue()) ++next_;
}

void OptionReader::ReadShort(const std::string& word) {
  const std::size_t equals = word.find('=');
  const std::string name = word.substr(1, equals - 1);
  const bool isShort = FindShort(word[1]) != nullptr;
  std::string meant;
  if (FindLong(name) != nullptr && !(isShort && name.size() == 1)) {
    meant = name;
  } else if (!isShort) {
    meant = Closest(name, "");
  }
  if (!meant.empty()) return ReadUnknown("-" + name, "--" + meant, equals != std::string::npos);
  for (std::size_t i = 1; i < word.size(); ++i) {
    Option* option = FindShort(word[i]);
    if (option == nullptr) return ReadUnknownShort(word, word[i]);
    const std::string rest = word.substr(i + 1);
    if (option->spec->GetType() != ParameterType::Flag) {
      if (rest.starts_with('=')) return RefuseEquals(*option, rest.substr(1));
      return ReadValue(*option, rest.empty() ? std::nullopt : std::optional(rest));
    }
    if (rest.starts_with('=')) {
      return Refuse(
          fmt::format("option \"-{}\" takes no value, not \"{}\"", word[i], rest.substr(1)));
    }
    ReadFlag(*option);
  }
}

/// The equals sign would be taken for the beginning of the value.
void OptionReader::RefuseEquals(Option& option, const std::string& value) {
  ++option.met;
  Refuse(fmt::format("option \"-{0}\" takes its value without \"=\": \"-{0} {1}\" or \"-{0}{1}\"",
                     option.spec->GetShortName(), value.empty() ? "VALUE" : value));
}

void OptionReader::ReadUnknownShort(const std::string& word, char letter) {
  if (ignoreUnknown_) return;
  const bool isWhole = word.size() == 2 || static_cast<unsigned char>(letter) >= 0x80;
  Refuse(isWhole ? fmt::format("unknown option \"{}\"", word)
                 : fmt::format("unknown option \"-{}\" in \"{}\"", letter, word));
}

bool OptionReader::Meet(Option& option) {
  ++option.met;
  if (option.met == 1 || option.spec->GetType() == ParameterType::StringList) return true;
  if (option.met == 2) {
    Refuse(fmt::format("option \"--{}\" is given more than once", option.spec->GetLongName()));
  }
  return false;
}

void OptionReader::ReadFlag(Option& option) {
  if (Meet(option)) option.into->SetParameter(option.spec->GetLongName(), true);
}

void OptionReader::ReadValue(Option& option, const std::optional<std::string>& attached) {
  const bool isFirst = Meet(option);
  if (!attached && !NextIsValue()) {
    if (next_ == words_.size()) awaited_ = option.spec;
    return Refuse(fmt::format("option \"--{}\" needs a value", option.spec->GetLongName()));
  }
  const std::string& value = attached ? *attached : words_[next_++];
  if (isFirst) Store(option, value);
}

void OptionReader::Store(Option& option, const std::string& value) {
  ReadResult read = ReadValueOf(*option.spec, value);
  if (!read.fault.empty()) return Refuse(std::move(read.fault));
  if (option.spec->GetType() == ParameterType::StringList) {
    option.collected.push_back(value);
  } else {
    option.into->SetParameter(option.spec->GetLongName(), std::move(read.value));
  }
}

void OptionReader::TakeRest(const std::string& listOption) {
  Option& option = *FindLong(listOption);
  ++option.met;
  for (--next_; next_ < words_.size(); ++next_) Store(option, words_[next_]);
}

void OptionReader::StoreLists() {
  for (Option& option : options_) {
    if (option.collected.empty()) continue;
    option.into->SetParameter(option.spec->GetLongName(), std::move(option.collected));
    option.collected.clear();
  }
}

ParsedOptions ParseOptions(const InputSpec& spec, const std::vector<std::string>& arguments) {
  const auto input = Input::New();
  OptionReader reader(arguments);
  reader.Declare(spec, input);
  while (const auto word = reader.NextWord()) {
    reader.Refuse(fmt::format("unexpected argument \"{}\"", *word));
  }
  reader.RefuseMissing();
  return {input, reader.GetFaults()};
}

}  // namespace autocli
