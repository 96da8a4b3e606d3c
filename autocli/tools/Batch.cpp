#include "autocli/tools/Batch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "autocli/base/Fault.h"
#include "autocli/line/OptionReader.h"
#include "autocli/run/Driver.h"
#include "autocli/run/Report.h"
#include "autocli/tools/SplitLine.h"
#include "platform/autocli/Declare.h"

namespace autocli {
namespace {

/// The lines of an open file, one at a time, as they come.
class LineReader {
 public:
  explicit LineReader(std::FILE* file) : file_(file) {}
  ~LineReader() {
    std::free(line_);
    if (file_ != stdin) std::fclose(file_);
  }
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  /// Reads the next line, without its end; false after the last, or when reading fails.
  bool Next(std::string& line) {
    errno = 0;
    const ssize_t size = getline(&line_, &capacity_, file_);
    if (size < 0) return false;
    line.assign(line_, static_cast<std::size_t>(size));
    if (line.ends_with('\n')) line.pop_back();
    if (line.ends_with('\r')) line.pop_back();
    return true;
  }
  /// Why Next() was false; empty at the end of the file.
  std::string GetProblem() const {
    return std::feof(file_) != 0 && std::ferror(file_) == 0 ? "" : std::strerror(errno);
  }

 private:
  std::FILE* file_;
  char* line_ = nullptr;
  std::size_t capacity_ = 0;
};

/// How the tool's own words were understood.
struct Order {
  std::string file;
  bool keepGoing = false;
  std::string problem;
};

Order ReadOrder(const std::vector<std::string>& words) {
  const auto options = Corvex::CallSpec::Input::New();
  OptionReader reader(words);
  reader.Declare(*Corvex::Declare::Inputs(
                     {{.name = "keep-going", .type = Corvex::CallSpec::ParameterType::Flag}}),
                 options);
  std::vector<std::string> files;
  while (const auto word = reader.NextWord()) files.push_back(*word);

  Order order{files.empty() ? "" : files.front(), options->HasParameter("keep-going"), ""};
  if (!reader.GetFaults().empty()) {
    order.problem = reader.GetFaults().front();
  } else if (files.size() != 1) {
    order.problem = files.empty() ? "the file of command lines is missing"
                                  : fmt::format("unexpected argument \"{}\"", files[1]);
  }
  return order;
}

int RunOne(const ToolCall& call, const std::vector<Fault>& pluginFaults, const std::string& line,
           std::size_t number) {
  std::string problem;
  std::vector<std::string> words = SplitLine(line, problem);
  if (!problem.empty()) {
    return RefuseBatchLine(number, fmt::format("line {}: {}", number, problem), call.out);
  }
  if (words.empty()) return 0;
  const Tool* tool = call.vocabulary.FindTool(words.front());
  if (tool != nullptr && tool->word != std::string_view(kHelpTool)) {
    return RefuseBatchLine(
        number, fmt::format("line {}: \"{}\" cannot stand in a batch", number, words.front()),
        call.out);
  }
  return RunBatchLine(words, number, call.vocabulary, pluginFaults, call.out);
}

int Fail(const ToolCall& call, const std::string& file, const std::string& reason) {
  return WriteFaults({{FaultKind::Usage, fmt::format("cannot read \"{}\": {}", file, reason)}},
                     call.err);
}

}  // namespace

int BatchTool(const ToolCall& call) {
  const Order order = ReadOrder(call.words);
  if (!order.problem.empty()) return RefuseTool(call, order.problem);
  std::FILE* file = order.file == "-" ? stdin : std::fopen(order.file.c_str(), "re");
  if (file == nullptr) return Fail(call, order.file, std::strerror(errno));

  const std::vector<Fault> pluginFaults = FaultsOf(call.plugins);
  int status = WriteFaults(pluginFaults, call.err);

  LineReader lines(file);
  std::string line;
  for (std::size_t number = 1; lines.Next(line); ++number) {
    const int lineStatus = RunOne(call, pluginFaults, line, number);
    status = std::max(status, lineStatus);
    // Whoever reads the results may wait for this one before it writes the next line.
    if (!call.out.Flush() || (lineStatus != 0 && !order.keepGoing)) return status;
  }
  const std::string problem = lines.GetProblem();
  return problem.empty() ? status : std::max(status, Fail(call, order.file, problem));
}

}  // namespace autocli
