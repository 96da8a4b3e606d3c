#include "lab/model/TraceDaemon.h"

#include "lab/base/Text.h"
#include "lab/model/HostFiles.h"
#include "lab/model/TraceConfig.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

constexpr int kNotRunning = 3;
constexpr int kFailed = 1;
constexpr int kNoSuchArgument = 2;

/// Why the daemon cannot begin with the file that is there, and what mends that. No reason: it can.
struct Refusal {
  std::string reason;
  const char* mend = "'autocli lab file put' puts another one there";
};

Refusal RefusalOf(const Host& host, const std::optional<HostFile>& config) {
  using Tovrin::Misc::StrCat;
  if (!config) return {StrCat(host.name, " has no ", kTraceConfigFile)};
  const std::string file = StrCat(kTraceConfigFile, " of ", host.name);
  if (const std::string fault = FaultOfTraceConfig(config->content); !fault.empty()) {
    Refusal refusal{StrCat(file, ", ", fault)};
    if (!config->isReadOnly) refusal.mend = "'korel trace set --reset true' mends the file";
    return refusal;
  }
  if (!config->isReadOnly && WithVolumeTaken(config->content).size() > kMostFileBytes) {
    return {StrCat(file, " has no room for a note of the volume")};
  }
  return {};
}

void Note(Store& store, const Host& host, const std::string& event) {
  HostFile log = FindFile(store, host, kTraceLogFile).value_or(HostFile{kTraceLogFile, "", false});
  if (log.isReadOnly) return;
  log.content = NewestLogLines(log.content + UtcNow() + " koreltraced " + event + "\n");
  PutFile(store, host, log);
}

/// The daemon begins, with what its configuration says.
int Begin(Store& store, const Host& host, const char* event) {
  auto config = FindFile(store, host, kTraceConfigFile);
  if (const Refusal refusal = RefusalOf(host, config); !refusal.reason.empty()) {
    Note(store, host, "refused: " + refusal.reason);
    return kFailed;
  }
  if (!config->isReadOnly) {
    config->content = WithVolumeTaken(config->content);
    PutFile(store, host, *config);
  }
  SetTraceDaemonRunning(store, host, true);
  Note(store, host, event);
  return 0;
}

void SetAnswer(Store& store, const Host& host, const char* column,
               const std::optional<int>& value) {
  const std::string set = "UPDATE hosts SET " + std::string(column);
  if (value) {
    Execute(store, (set + " = ? WHERE id = ?").c_str(), *value, host.id);
  } else {
    Execute(store, (set + " = NULL WHERE id = ?").c_str(), host.id);
  }
}

}  // namespace

bool IsTraceDaemonRunning(Store& store, const Host& host) {
  return Exists(store, "SELECT 1 FROM hosts WHERE id = ? AND isDaemonRunning", host.id);
}

void InstallTraceDaemon(Store& store, const Host& host) {
  PutFile(store, host, {kTraceConfigFile, StandardTraceConfig(), false});
}

int RunTraceScript(Store& store, const Host& host, const std::string& argument) {
  const TraceAnswers answers = TraceAnswersOf(store, host);
  const bool isRunning = IsTraceDaemonRunning(store, host);
  if (argument == "status") return answers.status.value_or(isRunning ? 0 : kNotRunning);
  if (argument == "start") return isRunning ? 0 : Begin(store, host, "started");
  if (argument == "restart") {
    const int answer = answers.restart.value_or(0);
    return answer != 0 ? answer : Begin(store, host, "restarted");
  }
  if (argument != "stop") return kNoSuchArgument;
  if (isRunning) {
    SetTraceDaemonRunning(store, host, false);
    Note(store, host, "stopped");
  }
  return 0;
}

int RunHostProgram(Store& store, const Host& host, const std::string& path,
                   const std::string& arguments) {
  constexpr int kCannotBeRun = -1;
  return path == kTraceDaemon ? RunTraceScript(store, host, arguments) : kCannotBeRun;
}

void StartTraceDaemon(Store& store, const Host& host) {
  if (RunTraceScript(store, host, "start") == 0) return;
  const Refusal refusal = RefusalOf(host, FindFile(store, host, kTraceConfigFile));
  Fail("the trace daemon cannot start: ", refusal.reason, "; ", refusal.mend);
}

void StopTraceDaemon(Store& store, const Host& host) { RunTraceScript(store, host, "stop"); }

void SetTraceAnswers(Store& store, const Host& host, const TraceAnswers& answers) {
  SetAnswer(store, host, "daemonStatus", answers.status);
  SetAnswer(store, host, "daemonRestartStatus", answers.restart);
}

TraceAnswers TraceAnswersOf(Store& store, const Host& host) {
  Query row(store, "SELECT daemonStatus, daemonRestartStatus FROM hosts WHERE id = ?", host.id);
  row.Next();
  return {row.OptionalNumber(0), row.OptionalNumber(1)};
}

void SetTraceDaemonRunning(Store& store, const Host& host, bool isRunning) {
  Execute(store, "UPDATE hosts SET isDaemonRunning = ? WHERE id = ?", isRunning, host.id);
}

std::string NewestLogLines(const std::string& log) {
  // Each new line is an entry of the memory, which keeps the log from before.
  constexpr std::size_t kMostLogBytes = 4096;
  if (log.size() <= kMostLogBytes) return log;
  const std::size_t end = log.find('\n', log.size() - kMostLogBytes - 1);
  return end == std::string::npos ? "" : log.substr(end + 1);
}

}  // namespace lab
