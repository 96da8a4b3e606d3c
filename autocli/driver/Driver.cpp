#include "autocli/driver/Driver.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "autocli/Version.h"
#include "autocli/driver/Call.h"
#include "autocli/driver/Report.h"
#include "autocli/driver/TellLine.h"
#include "autocli/help/Describe.h"
#include "autocli/help/Help.h"
#include "autocli/plugin/Guard.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::Output;

namespace {

std::string FormatterOf(const Call& call) {
  if (call.globals->HasParameter("formatter")) return call.globals->GetParameter("formatter");
  return call.GetCommand() == nullptr ? "" : call.GetCommand()->GetDefaultOutputFormatter();
}

std::string HelpFor(const Call& call, const Style& style) {
  if (call.tool != nullptr) return ToolHelp(*call.tool, style);
  if (const CommandSpec* command = call.GetCommand()) {
    return CommandHelp(Explained(*command, call.specs, call.path), style);
  }
  const auto& space = static_cast<const Namespace&>(*call.node);
  return call.path.empty() ? RootHelp(space, GlobalOptions(), Tools(), style)
                           : NamespaceHelp(space, call.path, style);
}

Coloring ColoringOf(const Call& call) {
  const std::string color = call.globals->GetParameter("color");
  return color == "always" ? Coloring::Always : color == "never" ? Coloring::Never : Coloring::Auto;
}

/// One run, step by step. Each step that ends the run returns its exit status.
class Session {
 public:
  Session(Call call, const std::vector<std::string>& pluginFaults, Sink& out, Sink& err)
      : call_(std::move(call)), out_(out), err_(err) {
    report_.path = call_.path;
    report_.formatter = FormatterOf(call_);
    out_.SetColoring(ColoringOf(call_));
    err_.SetColoring(ColoringOf(call_));
    for (const auto& fault : pluginFaults) report_.faults.push_back({FaultKind::Plugin, fault});
  }

  int Run() {
    if (call_.isPathSound && call_.globals->HasParameter("help")) {
      return Answer(HelpFor(call_, report_.formatter == kJson ? Style() : out_.GetStyle()));
    }
    if (call_.tool != nullptr) {
      Add(FaultKind::Usage, fmt::format("\"{}\" comes first on a line", call_.tool->word));
    }
    if (!call_.faults.empty() || call_.tool != nullptr) return Refuse();
    if (call_.globals->HasParameter("version")) return Answer(kVersionText);
    if (call_.globals->HasParameter("describe")) return DescribeNode();
    if (call_.GetCommand() == nullptr) return AskForCommand();
    Execute();
    return WriteReport(report_, out_, err_);
  }

  /// One line of a batch: its answer is JSON, whatever comes of it.
  int RunInBatch(std::size_t number) {
    for (const char* option : {"formatter", "describe"}) {
      if (!call_.globals->HasParameter(option)) continue;
      call_.faults.push_back(
          {FaultKind::Usage, std::string("option \"--") + option + "\" cannot stand in a batch"});
    }
    report_.formatter = kJson;
    report_.batchLine = number;
    return Run();
  }

  int Answer(const std::string& text) { return WriteAnswer(text, report_, out_, err_); }

 private:
  int Refuse() {
    report_.faults.insert(report_.faults.end(), call_.faults.begin(), call_.faults.end());
    const int status = WriteReport(report_, out_, err_);
    const bool isMistyped = std::ranges::count(report_.faults, FaultKind::Usage, &Fault::kind) > 0;
    if (report_.formatter != kJson && isMistyped) {
      const std::string path = call_.path.empty() ? "" : " " + call_.path;
      err_.Buffer() += UsageLine(call_.path, call_.specs) + "\n";
      err_.Buffer() += "try: " + std::string(kProgram) + path + " --help\n";
    }
    return status;
  }

  /// A tree is no result of a command: it is a document of its own, and faults go to `err`.
  int DescribeNode() {
    std::vector<std::string> problems;
    out_.Buffer() += Describe(*call_.node, kProgram, problems);
    for (const std::string& problem : problems) Add(FaultKind::Internal, problem);
    WriteFaults(report_.faults, err_);
    return StatusOf(report_.faults);
  }

  /// The path ends at a namespace: help says how it can go on.
  int AskForCommand() {
    if (report_.formatter != kJson) {
      WriteFaults(report_.faults, err_);
      err_.Buffer() += HelpFor(call_, err_.GetStyle());
      return std::max(StatusOf(report_.faults), MeaningOf(FaultKind::Usage).status);
    }
    const std::string place = call_.path.empty() ? "" : " behind \"" + call_.path + "\"";
    Add(FaultKind::Usage, "a command is missing" + place);
    return WriteReport(report_, out_, err_);
  }

  void Execute() {
    CommandSpec& command = *call_.GetCommand();
    const auto output = Output::New();
    const auto thrown = Guarded([&] {
      if (command.GetDispatcher() == nullptr) throw std::logic_error("it cannot be executed");
      command.GetDispatcher()->Execute(call_.input, output);
    });
    for (const std::string& message : output->GetErrorMessages()) Add(FaultKind::Command, message);
    // A result that was not checked, for the command did not come to its end, is not shown.
    if (thrown) return Add(FaultKind::Internal, "the command failed unexpectedly: " + *thrown);
    report_.result = output->GetRootObject();
    report_.view = View(*call_.specs.output, command.GetDefaultOutputParameters(), call_.fields);
    if (call_.globals->HasParameter("no-header")) report_.view.HideTitles();
  }

  void Add(FaultKind kind, const std::string& message) {
    report_.faults.push_back({kind, message});
  }

  Call call_;
  Sink& out_;
  Sink& err_;
  Report report_;
};

}  // namespace

int RunLine(const std::vector<std::string>& words, const std::shared_ptr<Namespace>& root,
            const std::vector<std::string>& pluginFaults, Sink& out, Sink& err) {
  TellLine(0, words);
  Session session(ReadCall(root, words), pluginFaults, out, err);
  return AsksForVersionFirst(words) ? session.Answer(kVersionText) : session.Run();
}

int RunTool(const std::string& name, const std::shared_ptr<CommandSpec>& command,
            std::vector<std::string> words, const std::vector<std::string>& pluginFaults, Sink& out,
            Sink& err) {
  const auto root = Namespace::New();
  root->RegisterNamespaceNode(command, "command");
  words.insert(words.begin(), "command");
  Call call = ReadCall(root, words);
  call.path = name;
  return Session(std::move(call), pluginFaults, out, err).Run();
}

int RunBatchLine(const std::vector<std::string>& words, std::size_t number,
                 const std::shared_ptr<Namespace>& root, Sink& out) {
  TellLine(number, words);
  return Session(ReadCall(root, words), {}, out, out).RunInBatch(number);
}

int RefuseBatchLine(std::size_t number, const std::string& message, Sink& out) {
  Report report;
  report.formatter = kJson;
  report.batchLine = number;
  report.faults = {{FaultKind::Usage, message}};
  return WriteReport(report, out, out);
}

}  // namespace autocli
