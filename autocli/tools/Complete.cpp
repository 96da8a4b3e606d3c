#include "autocli/tools/Complete.h"

#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include "autocli/base/Escape.h"
#include "autocli/contract/Shape.h"
#include "autocli/help/Placeholders.h"
#include "autocli/line/GlobalOptions.h"
#include "autocli/line/Line.h"
#include "autocli/line/Value.h"
#include "autocli/render/View.h"
#include "autocli/tools/LiveValues.h"
#include "autocli/tools/Paths.h"

namespace autocli {

using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::Input;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;

namespace {

/// What a list has room for: the first line, made harmless.
std::string Brief(const std::string& text) { return Escaped(text.substr(0, text.find('\n'))); }

/// Completes the word under the cursor after the line that was read so far.
class Completer {
 public:
  Completer(const Vocabulary& vocabulary, const std::vector<std::string>& words, std::string word)
      : vocabulary_(vocabulary),
        line_(ReadLine(vocabulary, words)),
        notes_(vocabulary.NotesOn(line_.path, line_.specs)),
        word_(std::move(word)) {}

  void OfferTools() {
    for (const Tool& tool : vocabulary_.tools) {
      if (tool.description != nullptr) Offer(tool.word, tool.description);
    }
  }

  /// The words that one of the program's own tools takes first, where it names them, "one|other".
  void OfferArguments(const Tool& tool) {
    const std::string_view arguments = tool.arguments;
    if (arguments.find('|') == std::string_view::npos) return;
    std::string_view rest = arguments.substr(0, arguments.find(' '));
    while (!rest.empty()) {
      const std::string_view name = rest.substr(0, rest.find('|'));
      const bool stands = std::ranges::all_of(name, [](char c) { return c >= 'a' && c <= 'z'; });
      if (stands) Offer(std::string(name), "");
      rest.remove_prefix(std::min(rest.size(), name.size() + 1));
    }
  }

  void OfferNext() {
    if (!line_.isPathSound || line_.tool != nullptr) return;
    if (line_.awaited != nullptr) return OfferValues(*line_.awaited, "");
    if (notes_.NamingOf(notes_.rest) == Naming::Line && OfferLine()) return;
    OfferChildren();
    if (line_.haveOptionsEnded) return;
    const std::size_t equals = word_.find('=');
    if (word_.starts_with("--") && equals != std::string::npos) {
      const auto* option = Find(&ParameterSpec::GetLongName, word_.substr(2, equals - 2));
      if (option != nullptr) OfferValues(*option, word_.substr(0, equals + 1));
    } else if (word_.size() > 1 && word_[0] == '-' && word_[1] != '-') {
      OfferBundle();
    } else {
      OfferOptions();
    }
  }

  std::vector<Candidate>& Found() { return found_; }

 private:
  void Offer(const std::string& value, const std::string& description) {
    // A shell could not type a value that is not plain text.
    if (value.empty() || !value.starts_with(word_) || Escaped(value) != value) return;
    if (std::ranges::count(found_, value, &Candidate::value) > 0) return;
    found_.push_back({value, Brief(description)});
  }

  /// The rest of the line is a command line itself. False while options in front of it may follow.
  bool OfferLine() {
    std::vector<std::string> line;
    line_.input->GetParameterList(notes_.rest, line);
    if (line.empty() && word_.starts_with('-')) return false;
    Completer inner(vocabulary_, line, word_);
    inner.OfferNext();
    found_ = std::move(inner.found_);
    return true;
  }

  void OfferChildren() {
    if (line_.GetCommand() != nullptr) return;
    for (const auto& child : static_cast<const Namespace&>(*line_.node).GetChildren()) {
      Offer(child->GetName(), child->GetDescription());
    }
  }

  /// Options that every line takes are in nobody's way until a hyphen asks for them.
  void OfferOptions() {
    if (line_.specs.input && !line_.IsQuestion()) OfferAbsent(*line_.specs.input, *line_.input);
    if (!word_.empty()) OfferAbsent(GlobalOptions(), *line_.globals);
  }

  /// The declared options that may still be given, required ones first.
  void OfferAbsent(const InputSpec& spec, const Input& given) {
    for (const bool required : {true, false}) {
      for (const auto& option : spec.GetParameters()) {
        if (option->IsRequired() != required) continue;
        const std::string& name = option->GetLongName();
        const bool isDone =
            given.HasParameter(name) && option->GetType() != ParameterType::StringList;
        const bool isHidden = &spec == line_.specs.input.get() && name == notes_.rest;
        if (!isDone && !isHidden) {
          Offer("--" + name, (required ? "required: " : "") + ExpandedDescription(*option));
        }
      }
    }
  }

  /// Short options in one word: the value that the last one takes, or the word as it stands.
  void OfferBundle() {
    const ParameterSpec* option = nullptr;
    for (std::size_t i = 1; i < word_.size(); ++i) {
      option = Find(&ParameterSpec::GetShortName, word_.substr(i, 1));
      if (option == nullptr) return;
      if (option->GetType() != ParameterType::Flag && i + 1 < word_.size()) {
        return OfferValues(*option, word_.substr(0, i + 1));
      }
    }
    Offer(word_, ExpandedDescription(*option));
  }

  /// Values of the option; `head` is what the word has in front of them.
  void OfferValues(const ParameterSpec& option, const std::string& head) {
    const auto& constraint = option.GetConstraint();
    if (constraint && constraint->GetType() == ParameterConstraintType::StringEnum) {
      for (const auto& [value, description] : constraint->GetValues()) {
        OfferValue(option, head, {value, description});
      }
    } else if (option.GetType() == ParameterType::Bool) {
      for (const char* value : {"true", "false"}) Offer(head + value, "");
    } else if (IsOwn(option)) {
      OfferNoted(option, head);
    } else if (option.GetLongName() == "fields") {
      OfferFields(head);
    }
  }

  /// Values that companions know of.
  void OfferNoted(const ParameterSpec& option, const std::string& head) {
    const Naming naming = notes_.NamingOf(option.GetLongName());
    if (naming == Naming::File || naming == Naming::Folder) {
      for (const auto& path : PathsFrom(word_.substr(head.size()), naming == Naming::Folder)) {
        Offer(head + path, "");
      }
    }
    const auto noted = notes_.options.find(option.GetLongName());
    if (noted == notes_.options.end()) return;
    std::vector<ValueSource> sources;
    for (const ValueSource& source : noted->second.values) {
      const auto holds = [&](const auto& given) { return GivenText(given.first) == given.second; };
      if (std::ranges::all_of(source.when, holds) && std::ranges::none_of(source.unless, holds)) {
        sources.push_back(source);
      }
    }
    for (const auto& live : LiveValues(vocabulary_, sources)) OfferValue(option, head, live);
  }

  /// What the line says for an option with one value; "true" for a flag; empty when it is not
  /// given.
  std::string GivenText(const std::string& name) const {
    const ParameterSpec* option = Find(&ParameterSpec::GetLongName, name);
    if (option == nullptr || !IsOwn(*option) || !line_.input->HasParameter(name)) return "";
    if (option->GetType() == ParameterType::Flag) return "true";
    return option->GetType() == ParameterType::String ? line_.input->GetParameter(name) : "";
  }

  /// A value that a list option has already is not offered to it again.
  void OfferValue(const ParameterSpec& option, const std::string& head, const Candidate& value) {
    if (option.GetType() == ParameterType::StringList && IsOwn(option)) {
      std::vector<std::string> given;
      line_.input->GetParameterList(option.GetLongName(), given);
      if (std::ranges::count(given, value.value) > 0) return;
    }
    if (!value.value.empty()) Offer(head + value.value, value.description);
  }

  /// The fields that are not picked yet, after the last comma.
  void OfferFields(const std::string& head) {
    if (!line_.specs.output) return;
    const std::string picked = word_.substr(head.size());
    std::size_t start = picked.rfind(',');
    start = start == std::string::npos ? 0 : picked.find_first_not_of(' ', start + 1);
    start = std::min(start, picked.size());
    const auto names = SplitNames(picked.substr(0, start));
    for (const std::string& name : FieldNames(*line_.specs.output)) {
      if (std::ranges::count(names, name) == 0) Offer(head + picked.substr(0, start) + name, "");
    }
  }

  /// The option of the command, or of every line, that has this name; null without one.
  const ParameterSpec* Find(const std::string& (ParameterSpec::*name)() const,
                            const std::string& text) const {
    const InputSpec* own = line_.specs.input.get();
    for (const InputSpec* spec : {own, &GlobalOptions()}) {
      if (spec == nullptr) continue;
      for (const auto& option : spec->GetParameters()) {
        if ((*option.*name)() == text) return option.get();
      }
    }
    return nullptr;
  }

  /// The option is the command's, not one that every line takes.
  bool IsOwn(const ParameterSpec& option) const {
    return line_.specs.input &&
           std::ranges::any_of(line_.specs.input->GetParameters(),
                               [&](const auto& own) { return own.get() == &option; });
  }

  const Vocabulary& vocabulary_;
  const Line line_;
  const CommandNotes notes_;
  const std::string word_;
  std::vector<Candidate> found_;
};

/// As long as it lives, nobody who is asked may change anything, or take long.
class Blink {
 public:
  Blink() {
    if (setenv(kVariable, std::to_string(getpid()).c_str(), 1) != 0) throw std::bad_alloc();
    signal(SIGALRM, [](int) { _exit(0); });
    Ring(Patience());
  }
  ~Blink() {
    Ring(0);
    signal(SIGALRM, SIG_DFL);
    unsetenv(kVariable);
  }
  Blink(const Blink&) = delete;
  Blink& operator=(const Blink&) = delete;

 private:
  /// Its value is the process, so that one that stays exported means nothing to others.
  static constexpr const char* kVariable = "AUTOCLI_COMPLETING";
  /// With what the process takes to begin, below the tenth of a second that feels immediate.
  static constexpr std::int64_t kMilliseconds = 80;
  static constexpr std::int64_t kMostMilliseconds = 60'000;

  static std::int64_t Patience() {
    const char* text = std::getenv("AUTOCLI_COMPLETE_MS");
    const auto milliseconds = text == nullptr ? std::nullopt : ReadInteger(text);
    return std::clamp<std::int64_t>(milliseconds.value_or(kMilliseconds), 1, kMostMilliseconds);
  }

  static void Ring(std::int64_t milliseconds) {
    itimerval timer{};
    timer.it_value.tv_sec = milliseconds / 1000;
    timer.it_value.tv_usec = milliseconds % 1000 * 1000;
    setitimer(ITIMER_REAL, &timer, nullptr);
  }
};

}  // namespace

std::vector<Candidate> Complete(const Vocabulary& vocabulary, std::vector<std::string> words) {
  const std::string word = words.empty() ? "" : words.back();
  if (!words.empty()) words.pop_back();
  const Tool* tool = nullptr;
  if (!words.empty() && words.front() != kHelpTool) tool = vocabulary.FindTool(words.front());
  Completer completer(vocabulary, words, word);
  if (tool != nullptr) {
    if (words.size() == 1) completer.OfferArguments(*tool);
  } else {
    completer.OfferNext();
    if (words.empty()) completer.OfferTools();
  }
  return std::move(completer.Found());
}

int CompleteTool(const ToolCall& call) {
  const Blink blink;
  for (const auto& [value, description] : Complete(call.vocabulary, call.words)) {
    call.out.Buffer() += description.empty() ? value + "\n" : value + "\t" + description + "\n";
  }
  return 0;
}

}  // namespace autocli
