#include "autocli/plugin/Restart.h"

#include <fmt/format.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace autocli {

namespace {

constexpr std::string_view kVariable = "AUTOCLI_LEFT_OUT=";
constexpr std::array kSignals = {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV};
constexpr std::size_t kDigits = 2;  // of a signal; 00 is exit()

/// What a handler needs, prepared, for little can be called in one.
struct Start {
  char** arguments;
  char** environment;
  char* signal;  ///< the digits in the environment
};

/// While a plug-in is being loaded: how to start anew.
std::atomic<const Start*> nextStart = nullptr;
static_assert(decltype(nextStart)::is_always_lock_free);
Start preparedStart;

// How signals were before.
std::array<struct sigaction, kSignals.size()> formerActions;
stack_t formerStack;
sigset_t formerMask;

void StartAnew(int signal);

void TakeSignalsBack() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    struct sigaction action {};
    sigaction(kSignals[i], &formerActions[i], &action);
    // A plug-in may have taken the signal for itself.
    if (action.sa_handler != StartAnew) sigaction(kSignals[i], &action, nullptr);
  }
}

/// Returns only when the program cannot be started anew; what is ending it then does.
void StartAnew(int signal) {
  const Start* start = nextStart.exchange(nullptr);
  TakeSignalsBack();
  if (start == nullptr) return;
  start->signal[0] = static_cast<char>('0' + signal / 10);
  start->signal[1] = static_cast<char>('0' + signal % 10);
  sigprocmask(SIG_SETMASK, &formerMask, nullptr);
  execve("/proc/self/exe", start->arguments, start->environment);
}

void StartAnewAtExit() {
  if (nextStart != nullptr) StartAnew(0);
}

void CatchSignals() {
  // A plug-in that uses its stack up leaves none for the handler.
  alignas(16) static std::array<char, 1 << 16> stack;
  const stack_t own{stack.data(), 0, stack.size()};
  sigaltstack(&own, &formerStack);
  sigprocmask(SIG_SETMASK, nullptr, &formerMask);
  struct sigaction action {};
  action.sa_handler = StartAnew;
  action.sa_flags = SA_ONSTACK;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    sigaction(kSignals[i], &action, &formerActions[i]);
  }
  std::atexit(StartAnewAtExit);
}

}  // namespace

Restart::Restart(char** arguments)
    : arguments_(getauxval(AT_SECURE) == 0 ? arguments : nullptr),
      list_(std::string(kVariable) + std::to_string(getpid())) {
  if (arguments_ == nullptr) return;
  for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
    if (std::strncmp(*variable, kVariable.data(), kVariable.size()) != 0) {
      environment_.push_back(*variable);
    } else if (std::string_view(*variable).starts_with(list_ + "/")) {
      list_ = *variable;
    }
  }
  environment_.resize(environment_.size() + 2);
  CatchSignals();
}

Restart::~Restart() {
  Blame("");
  if (arguments_ == nullptr) return;
  TakeSignalsBack();
  sigaltstack(&formerStack, nullptr);
}

std::string Restart::ProblemOf(const std::string& plugin) const {
  for (std::size_t at = list_.find('/'); at < list_.size(); at = list_.find('/', at + 1)) {
    const std::string entry = list_.substr(at + 1, list_.find('/', at + 1) - at - 1);
    if (entry.size() < kDigits || entry.substr(kDigits) != plugin) continue;
    const char* signal = sigabbrev_np(std::atoi(entry.substr(0, kDigits).c_str()));
    return fmt::format("ended the program while it was loaded ({}{})",
                       signal == nullptr ? "" : "SIG", signal == nullptr ? "exit" : signal);
  }
  return "";
}

void Restart::Blame(const std::string& plugin) {
  nextStart = nullptr;
  if (arguments_ == nullptr || plugin.empty()) return;
  next_ = list_ + "/00" + plugin;
  environment_[environment_.size() - 2] = next_.data();
  preparedStart = {arguments_, environment_.data(), next_.data() + list_.size() + 1};
  nextStart = &preparedStart;
}

}  // namespace autocli
