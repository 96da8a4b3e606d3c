#include "lab/store/Patience.h"

#include <string>

#include "lab/base/CommandLine.h"
#include "lab/base/Text.h"

namespace lab {
namespace {

struct Waited {
  std::string command;
  Waiting time{0};
};

/// What the present command has waited; nothing when it is another than the last one.
Waited& WaitedByCommand() {
  static auto& waited = *new Waited;
  const std::string command = CurrentCommand().number;
  if (waited.command != command) waited = {command};
  return waited;
}

std::int64_t LimitInSeconds() {
  constexpr std::int64_t kStandard = 10;
  constexpr std::int64_t kMost = 86400;
  const char* value = Environment("KOREL_LAB_WAIT");
  if (value == nullptr) return kStandard;
  const auto seconds = ParseNumber(value);
  if (!seconds || *seconds > kMost) {
    Fail("KOREL_LAB_WAIT must be a number of seconds from 0 to 86400, got ", Quoted(value));
  }
  return *seconds;
}

}  // namespace

Waiting PatienceLeft() {
  const Waiting left = std::chrono::seconds(LimitInSeconds()) - WaitedByCommand().time;
  return std::max(left, Waiting::zero());
}

WaitingTime::~WaitingTime() { WaitedByCommand().time += std::chrono::steady_clock::now() - start_; }

void FailBusy(const std::string& path) {
  Fail("the lab ", Quoted(path), " is in use by another process; waited ",
       std::to_string(LimitInSeconds()),
       " s in all; try again, or let KOREL_LAB_WAIT name more seconds");
}

}  // namespace lab
