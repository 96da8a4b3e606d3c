#pragma once

#include <optional>
#include <string>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// The trace daemon of a host: it writes no traces, but starts, stops and follows its
/// configuration.

/// Its init script.
inline constexpr const char* kTraceDaemon = "/etc/init.d/koreltraced";
inline constexpr const char* kTraceConfigFile = "/etc/ostrel/korel/koreltraced.conf";
inline constexpr const char* kTraceLogFile = "/var/log/koreltraced.log";

/// Gives a new host the daemon's configuration; the daemon runs.
void InstallTraceDaemon(Store& store, const Host& host);

/// Does what the init script does for "status", "start", "stop" and "restart", and returns its exit
/// status: 0 done, 3 the daemon does not run, 1 it cannot start, 2 any other argument. Starting and
/// restarting note in the configuration which volume the daemon took; without a configuration that
/// it can use it cannot start, and one that runs goes on with the settings it has.
int RunTraceScript(Store& store, const Host& host, const std::string& argument);

/// Runs a program of the host, of which a lab host has the daemon's init script alone. Returns its
/// exit status, negative when there is no such program.
int RunHostProgram(Store& store, const Host& host, const std::string& path,
                   const std::string& arguments);

/// Starts or stops the daemon; throws KorelCtlException when that fails.
void StartTraceDaemon(Store& store, const Host& host);
void StopTraceDaemon(Store& store, const Host& host);

/// What the init script answers in place of what it would, for "status" and for "restart", which is
/// then not done unless the answer is 0. Nothing given: it answers what is so.
struct TraceAnswers {
  std::optional<int> status;
  std::optional<int> restart;
};
void SetTraceAnswers(Store& store, const Host& host, const TraceAnswers& answers);
TraceAnswers TraceAnswersOf(Store& store, const Host& host);

bool IsTraceDaemonRunning(Store& store, const Host& host);
void SetTraceDaemonRunning(Store& store, const Host& host, bool isRunning);

/// The newest lines of a log, as many as the daemon keeps.
std::string NewestLogLines(const std::string& log);

}  // namespace lab
