#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// Reads a command line from left to right: the caller gets the plain words one by one, and may
/// declare further options whenever a word tells it more. Faults are collected, and reading goes
/// on.
///
/// The word after an option that takes a value is its value whatever it looks like, unless it is
/// "--" or written exactly like a declared option ("--name", "--name=..." or "-n"); a text of that
/// form is given as "--name=--text". An integer is always a value. A long option with one hyphen is
/// refused, even where its first letter is a short option.
class OptionReader {
 public:
  explicit OptionReader(std::vector<std::string> words) : words_(std::move(words)) {}

  /// From here on these options are understood, and stored in `into`.
  void Declare(const Corvex::CallSpec::InputSpec& spec,
               const std::shared_ptr<Corvex::CallSpec::Input>& into);
  /// Reads the options up to the next plain word, and that word; nothing at the end of the line.
  std::optional<std::string> NextWord();
  /// From here on an unknown option is no fault: it belongs to a command that was not found.
  void IgnoreUnknown() { ignoreUnknown_ = true; }
  /// The word that was read last and all after it, whatever they look like, are values of the list
  /// option of that name, which was declared.
  void TakeRest(const std::string& listOption);
  /// A required option was declared and not met.
  bool IsAnyMissing() const;
  /// Refuses the absence of each. `rest` names the list option that takes the rest of the line.
  void RefuseMissing(const std::string& rest = "");
  void Refuse(std::string fault) { faults_.push_back(std::move(fault)); }

  const std::vector<std::string>& GetFaults() const { return faults_; }
  /// The option at the end of the line whose value is missing; null when none is.
  const std::shared_ptr<Corvex::CallSpec::ParameterSpec>& GetAwaited() const { return awaited_; }
  /// There was a "--".
  bool HaveOptionsEnded() const { return optionsEnded_; }

 private:
  struct Option {
    std::shared_ptr<Corvex::CallSpec::ParameterSpec> spec;
    std::shared_ptr<Corvex::CallSpec::Input> into;
    int met = 0;
    std::vector<std::string> collected = {};  ///< so far, of a list option
  };

  static bool IsMissing(const Option& option) {
    return option.spec->IsRequired() && option.met == 0;
  }

  Option* FindLong(std::string_view name);
  Option* FindShort(char name);
  /// The long option that may have been meant, both written with these hyphens; empty for none.
  std::string Closest(const std::string& name, const std::string& hyphens) const;
  bool IsOption(const std::string& word);
  bool NextIsValue();

  void ReadLong(const std::string& word);
  void ReadUnknown(const std::string& name, const std::string& meant, bool hasValue);
  void ReadShort(const std::string& word);
  void RefuseEquals(Option& option, const std::string& value);
  void ReadUnknownShort(const std::string& word, char letter);
  /// Counts the option; false when it was given before and may not be given again.
  bool Meet(Option& option);
  void ReadFlag(Option& option);
  void ReadValue(Option& option, const std::optional<std::string>& attached);
  void Store(Option& option, const std::string& value);
  void StoreLists();

  std::vector<std::string> words_;
  std::size_t next_ = 0;
  bool optionsEnded_ = false;
  bool ignoreUnknown_ = false;
  std::vector<Option> options_;
  std::vector<std::string> faults_;
  std::shared_ptr<Corvex::CallSpec::ParameterSpec> awaited_;
};

}  // namespace autocli
