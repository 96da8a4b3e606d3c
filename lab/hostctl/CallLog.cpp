#include "lab/hostctl/CallLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <nlohmann/json.hpp>

#include "lab/base/CommandLine.h"
#include "lab/base/Text.h"
#include "lab/store/LabFile.h"

namespace lab {

namespace {

/// To the millisecond.
std::string PresentTime() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  std::string time = UtcTime(now.tv_sec);
  const std::string milliseconds = std::to_string(1000 + now.tv_nsec / 1000000);
  return time.insert(time.size() - 1, "." + milliseconds.substr(1));
}

}  // namespace

CallLog::CallLog() {
  const char* path = Environment("KOREL_LAB_CALLS");
  if (path == nullptr || !MayChange()) return;
  path_ = path;
  const std::string lab = LabPath();
  if (IsSameFile(path_, lab) || path_ == lab || path_ == lab + "-journal") {
    Refuse("it is the lab itself");
  }
  // Without waiting for whoever may read a pipe; once it is open it is written to as a file is.
  file_ = File(open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600));
  if (!file_.IsOpen()) Refuse(errno == ENXIO ? "nobody reads this pipe" : ErrorText(errno));
  fcntl(file_.Get(), F_SETFL, O_APPEND);
}

void CallLog::Refuse(const std::string& reason) const {
  Fail("KOREL_LAB_CALLS names a file that cannot be written, ", Quoted(path_), ": ", reason);
}

void CallLog::Write(const EndedCall& call) {
  Json line{{"time", PresentTime()}, {"host", call.host}, {"process", getpid()}};
  const auto number = ParseNumber(CurrentCommand().number).value_or(0);
  if (number > 0) line["line"] = number;
  line["operation"] = call.operation.Get();
  line["arguments"] = call.arguments;
  if (call.error != nullptr) line["error"] = *call.error;
  const std::string text = line.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
  // Whoever read a pipe may be gone: that is an error here, and ends nobody.
  const auto before = signal(SIGPIPE, SIG_IGN);
  errno = 0;
  const ssize_t written = write(file_.Get(), text.data(), text.size());
  const int reason = errno == 0 ? ENOSPC : errno;
  signal(SIGPIPE, before);
  if (written == static_cast<ssize_t>(text.size())) return;
  Fail(call.operation.Get(), " was carried out but could not be written to KOREL_LAB_CALLS, ",
       Quoted(path_), ": ", ErrorText(reason));
}

}  // namespace lab
