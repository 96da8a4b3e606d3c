#include "lab/model/TraceDaemon.h"

#include "lab/base/Text.h"
#include "lab/model/HostFiles.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

constexpr int kNotRunning = 3;
constexpr int kFailed = 1;
constexpr int kNoSuchArgument = 2;

constexpr std::string_view kVolume = "KORELTRACED_VOLUME=";
constexpr std::string_view kLastSelectedVolume = "KORELTRACED_LAST_SELECTED_VOLUME=";
constexpr const char* kOwnVolume = "\"/var/log/koreltraces\"";

constexpr const char* kStandardConfig = R"(KORELTRACED_VOLUME=""
KORELTRACED_ROTATE_MAX_FILES=8
KORELTRACED_LOG_URGENT_TO_SYSLOG=1
KORELTRACED_ROTATE_FILE_SIZE=45
KORELTRACED_URGENT_ROTATE_MAX_FILES=8
KORELTRACED_URGENT_ROTATE_FILE_SIZE=10
KORELTRACED_DOM_OBJ_ROTATE_MAX_FILES=8
KORELTRACED_DOM_OBJ_ROTATE_FILE_SIZE=45
KORELTRACED_LSOM_ROTATE_MAX_FILES=8
KORELTRACED_LSOM_ROTATE_FILE_SIZE=45
KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES=8
KORELTRACED_LSOM_VERBOSE_ROTATE_FILE_SIZE=45
KORELTRACED_LAST_SELECTED_VOLUME="/var/log/koreltraces"
)";

/// The configuration with a note of the volume that the daemon took: the last one that is named,
/// else its own.
std::string WithVolumeTaken(const std::string& config) {
  std::string noted;
  std::string volume;
  std::string_view rest = config;
  while (!rest.empty()) {
    const std::string_view whole = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(rest.size(), whole.size() + 1));
    std::string_view line = whole;
    line.remove_prefix(std::min(line.size(), line.find_first_not_of(" \t")));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.starts_with(kLastSelectedVolume)) continue;
    if (line.starts_with(kVolume)) volume = line.substr(kVolume.size());
    noted.append(whole) += '\n';
  }
  if (volume.empty() || volume == "\"\"") volume = kOwnVolume;
  return noted.append(kLastSelectedVolume) + volume + "\n";
}

void Note(Store& store, const Host& host, const char* event) {
  HostFile log = FindFile(store, host, kTraceLogFile).value_or(HostFile{kTraceLogFile, "", false});
  if (log.isReadOnly) return;
  log.content = NewestLogLines(log.content + UtcNow() + " koreltraced " + event + "\n");
  PutFile(store, host, log);
}

/// The daemon begins, with what its configuration says.
int Begin(Store& store, const Host& host, const char* event) {
  auto config = FindFile(store, host, kTraceConfigFile);
  if (!config) return kFailed;
  if (!config->isReadOnly) {
    config->content = WithVolumeTaken(config->content);
    if (config->content.size() > kMostFileBytes) return kFailed;
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
  PutFile(store, host, {kTraceConfigFile, kStandardConfig, false});
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
  Fail("the trace daemon cannot start: ", host.name, " has no ", kTraceConfigFile,
       ", or one too large; 'autocli lab file put' puts another one there");
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
