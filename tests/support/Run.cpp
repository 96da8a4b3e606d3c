#include "autocli/line/ParseOptions.h"
#include "autocli/tools/SplitLine.h"
#include "korel/Tree.h"
#include "tests/support/RecordingHost.h"

namespace test {
namespace {

using namespace Corvex::MetaObj;

template <typename Value>
std::string Joined(const std::vector<Value>& values, const char* separator,
                   const std::function<std::string(const Value&)>& text) {
  std::string joined;
  for (const Value& value : values) joined += (joined.empty() ? "" : separator) + text(value);
  return joined;
}

std::string Text(const MetaObject& value) {
  switch (value.GetType()) {
    case MetaType::Bool: {
      const auto& set = static_cast<const MetaBool&>(value).GetValue();
      return set ? (*set ? "true" : "false") : "-";
    }
    case MetaType::Int: {
      const auto& set = static_cast<const MetaInt&>(value).GetValue();
      return set ? std::to_string(*set) : "-";
    }
    case MetaType::String:
      return static_cast<const MetaString&>(value).GetValue().value_or("-");
    case MetaType::Struct: {
      const auto& record = static_cast<const MetaStruct&>(value);
      return record.GetTypeName() + "{" +
             Joined<MetaStruct::Field>(
                 record.GetFields(), ", ",
                 [](const auto& field) { return field.name + "=" + Text(*field.value); }) +
             "}";
    }
    case MetaType::List:
      return "[" +
             Joined<MetaObjectPtr>(static_cast<const MetaList&>(value).GetElements(), ", ",
                                   [](const auto& element) { return Text(*element); }) +
             "]";
  }
  return "";
}

}  // namespace

std::string RunLine(const std::string& line) {
  using namespace Corvex::AutoCli;
  const auto root = Namespace::New();
  Corvex::Declare::RegisterTop(*root, OstrelCli::KorelNamespace::Tree());
  std::shared_ptr<NamespaceNode> node = root;
  std::string problem;
  std::vector<std::string> words = autocli::SplitLine(line, problem);
  while (const auto space = std::dynamic_pointer_cast<Namespace>(node)) {
    node = space->GetNamespaceNode(words.at(0));
    words.erase(words.begin());
  }
  const auto command = std::dynamic_pointer_cast<CommandSpec>(node);
  if (!command) return "no such command";
  const auto parsed = autocli::ParseOptions(*command->GetInputSpec(), words);
  if (!parsed.faults.empty()) return "usage: " + parsed.faults[0];
  const auto output = Corvex::CallSpec::Output::New();
  command->GetDispatcher()->Execute(parsed.input, output);
  std::string outcome;
  for (const auto& message : output->GetErrorMessages()) outcome += "error: " + message + " | ";
  return outcome + (output->GetRootObject() ? Text(*output->GetRootObject()) : "none");
}

std::function<void(RecordingHost&)> Failing(const std::string& operation,
                                            std::function<void(RecordingHost&)> prepare) {
  return [=](RecordingHost& host) {
    if (prepare) prepare(host);
    host.failures[operation] = "no luck";
  };
}

void Check(const std::vector<Case>& cases) {
  for (const Case& one : cases) {
    SCOPED_TRACE(one.line);
    RecordingHost host;
    if (one.prepare) one.prepare(host);
    EXPECT_EQ(RunLine("korel " + one.line), one.outcome);
    EXPECT_EQ(Joined<std::string>(host.calls, " | ", [](const auto& call) { return call; }),
              one.calls);
  }
}

}  // namespace test
