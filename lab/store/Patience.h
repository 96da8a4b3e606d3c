#pragma once

#include <chrono>

/// How long a command waits for a lab that others use: ten seconds by the clock, or as many as
/// KOREL_LAB_WAIT says, for all its operations together.
namespace lab {

using Waiting = std::chrono::nanoseconds;

/// What the present command may still wait. Throws KorelCtlException when KOREL_LAB_WAIT is no
/// number of seconds from 0 to 86400.
Waiting PatienceLeft();

/// Counts the time from its making to its end as waited by the present command.
class WaitingTime {
 public:
  WaitingTime() : start_(std::chrono::steady_clock::now()) {}
  ~WaitingTime();
  WaitingTime(const WaitingTime&) = delete;
  WaitingTime& operator=(const WaitingTime&) = delete;

 private:
  std::chrono::steady_clock::time_point start_;
};

/// Throws KorelCtlException: the lab of that path is in use, and how long was waited.
[[noreturn]] void FailBusy(const std::string& path);

}  // namespace lab
