#include "autocli/run/Driver.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/Version.h"
#include "autocli/base/Guard.h"
#include "autocli/help/Describe.h"
#include "autocli/help/Help.h"
#include "autocli/line/GlobalOptions.h"
#include "autocli/line/Line.h"
#include "autocli/run/Report.h"
#include "autocli/run/TellLine.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::Output;

namespace {

std::string FormatterOf(const Line& line) {
  if (line.globals->HasParameter("formatter")) return line.globals->GetParameter("formatter");
  return line.GetCommand() == nullptr ? "" : line.GetCommand()->GetDefaultOutputFormatter();
}

Coloring ColoringOf(const Line& line) {
  const std::string color = line.globals->GetParameter("color");
  return color == "always" ? Coloring::Always : color == "never" ? Coloring::Never : Coloring::Auto;
}

/// One run, step by step. Each step that ends the run returns its exit status.
class Execution {
 public:
  Execution(const Vocabulary& vocabulary, Line line, const std::vector<Fault>& pluginFaults,
            Sink& out, Sink& err)
      : vocabulary_(vocabulary), line_(std::move(line)), out_(out), err_(err) {
    report_.path = line_.path;
    report_.formatter = FormatterOf(line_);
    report_.isSuggested = !line_.globals->HasParameter("formatter");
    out_.SetColoring(ColoringOf(line_));
    err_.SetColoring(ColoringOf(line_));
    report_.faults = pluginFaults;
    if (!line_.isUnknown) return;
    // Where plug-ins are missing, what the line names may be theirs.
    for (Fault& fault : report_.faults) fault.kind = FaultKind::Plugin;
  }

  /// The errors that the command reports are of that kind.
  void ReportAs(FaultKind kind) { errors_ = kind; }

  int Run() {
    if (line_.isPathSound && line_.globals->HasParameter("help")) {
      return Answer(HelpFor(report_.formatter == kJson ? Style() : out_.GetStyle()));
    }
    if (line_.tool != nullptr) {
      Add(FaultKind::Usage, fmt::format("\"{}\" comes first on a line", line_.tool->word));
    }
    if (!line_.faults.empty() || line_.tool != nullptr) return Refuse();
    if (line_.globals->HasParameter("version")) return Answer(kVersionText);
    if (line_.globals->HasParameter("describe")) return DescribeNode();
    if (line_.GetCommand() == nullptr) return AskForCommand();
    Execute();
    return WriteReport(report_, out_, err_);
  }

  /// One line of a batch: its answer is JSON, whatever comes of it.
  int RunInBatch(std::size_t number) {
    for (const char* option : {"formatter", "describe"}) {
      if (!line_.globals->HasParameter(option)) continue;
      line_.faults.push_back(
          {FaultKind::Usage, std::string("option \"--") + option + "\" cannot stand in a batch"});
    }
    report_.formatter = kJson;
    report_.batchLine = number;
    return Run();
  }

  int Answer(const std::string& text) { return WriteAnswer(text, report_, out_, err_); }

 private:
  std::string HelpFor(const Style& style) const {
    if (line_.tool != nullptr) return ToolHelp(vocabulary_, *line_.tool, style);
    if (const CommandSpec* command = line_.GetCommand()) {
      return CommandHelp(vocabulary_, Explained(*command, line_.specs, line_.path, Notes()), style);
    }
    if (line_.path.empty()) return RootHelp(vocabulary_, GlobalOptions(), style);
    return NamespaceHelp(vocabulary_, static_cast<const Namespace&>(*line_.node), line_.path,
                         style);
  }

  CommandNotes Notes() const { return vocabulary_.NotesOn(line_.path, line_.specs); }

  int Refuse() {
    report_.faults.insert(report_.faults.end(), line_.faults.begin(), line_.faults.end());
    const int status = WriteReport(report_, out_, err_);
    const bool isMistyped = std::ranges::count(report_.faults, FaultKind::Usage, &Fault::kind) > 0;
    if (report_.formatter != kJson && isMistyped) {
      err_.Buffer() += UsageLine(vocabulary_, line_.path, line_.specs, Notes()) + "\n";
      err_.Buffer() += "try: " + vocabulary_.Typed(line_.path) + " --help\n";
    }
    return status;
  }

  /// A tree is no result of a command: it is a document of its own, and faults go to `err`.
  int DescribeNode() {
    std::vector<std::string> problems;
    out_.Buffer() += Describe(*line_.node, kProgram, problems);
    for (const std::string& problem : problems) Add(FaultKind::Internal, problem);
    return WriteFaults(report_.faults, err_);
  }

  /// The path ends at a namespace: help says how it can go on.
  int AskForCommand() {
    if (report_.formatter != kJson) {
      const int status = WriteFaults(report_.faults, err_);
      err_.Buffer() += HelpFor(err_.GetStyle());
      return std::max(status, MeaningOf(FaultKind::Usage).status);
    }
    const std::string place = line_.path.empty() ? "" : " after \"" + line_.path + "\"";
    Add(FaultKind::Usage, "a command is missing" + place);
    return WriteReport(report_, out_, err_);
  }

  void Execute() {
    CommandSpec& command = *line_.GetCommand();
    const auto output = Output::New();
    const auto thrown =
        Guarded([&] { autocli::Execute(command, line_.specs, line_.input, output); });
    for (const std::string& message : output->GetErrorMessages()) Add(errors_, message);
    // A result that was not checked, for the command did not come to its end, is not shown.
    if (thrown) {
      return Add(FaultKind::Internal, Blame(command, "failed unexpectedly: " + *thrown));
    }
    report_.result = output->GetRootObject();
    report_.view = View(*line_.specs.output, command.GetDefaultOutputParameters(), line_.fields);
    if (line_.globals->HasParameter("no-header")) report_.view.HideTitles();
  }

  void Add(FaultKind kind, const std::string& message) {
    report_.faults.push_back({kind, message});
  }

  const Vocabulary& vocabulary_;
  Line line_;
  Sink& out_;
  Sink& err_;
  Report report_;
  FaultKind errors_ = FaultKind::Command;
};

}  // namespace

int RunLine(const std::vector<std::string>& words, const Vocabulary& vocabulary,
            const std::vector<Fault>& pluginFaults, Sink& out, Sink& err) {
  TellLine(0, words);
  Execution execution(vocabulary, ReadLine(vocabulary, words), pluginFaults, out, err);
  return AsksForVersionFirst(words) ? execution.Answer(kVersionText) : execution.Run();
}

int RunTool(const std::string& name, const std::shared_ptr<CommandSpec>& command,
            std::vector<std::string> words, FaultKind errors, Sink& out, Sink& err) {
  const Vocabulary vocabulary = {Namespace::New()};
  vocabulary.root->RegisterNamespaceNode(command, "command");
  words.insert(words.begin(), "command");
  Line line = ReadLine(vocabulary, words);
  line.path = name;
  Execution execution(vocabulary, std::move(line), {}, out, err);
  execution.ReportAs(errors);
  return execution.Run();
}

int RunBatchLine(const std::vector<std::string>& words, std::size_t number,
                 const Vocabulary& vocabulary, const std::vector<Fault>& pluginFaults, Sink& out) {
  TellLine(number, words);
  Line line = ReadLine(vocabulary, words);
  const bool isTold = line.isUnknown;
  return Execution(vocabulary, std::move(line), isTold ? pluginFaults : std::vector<Fault>(), out,
                   out)
      .RunInBatch(number);
}

int RefuseBatchLine(std::size_t number, const std::string& message, Sink& out) {
  Report report;
  report.formatter = kJson;
  report.batchLine = number;
  report.faults = {{FaultKind::Usage, message}};
  return WriteReport(report, out, out);
}

}  // namespace autocli
