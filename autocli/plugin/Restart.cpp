#include "autocli/plugin/Restart.h"

#include <sys/auxv.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace autocli {

namespace {

constexpr std::string_view kVariable = "AUTOCLI_LEFT_OUT=";
constexpr const char* kEnded = "ended the program while it was loaded: ";

struct Ending {
  int signal;  ///< 0: none
  const char* name;
};
constexpr std::array<Ending, 6> kEndings = {{{SIGABRT, "SIGABRT"},
                                             {SIGBUS, "SIGBUS"},
                                             {SIGFPE, "SIGFPE"},
                                             {SIGILL, "SIGILL"},
                                             {SIGSEGV, "SIGSEGV"},
                                             {0, "exit()"}}};
constexpr std::size_t kSignals = kEndings.size() - 1;
constexpr std::size_t kLongestName = 8;

// Nothing that a file is called has a slash in it, but what is wrong with it may.
constexpr char kSlash = '/';
constexpr char kNoSlash = '\x1f';

/// What a handler needs, prepared, for little can be called in one.
struct Start {
  char** arguments;
  char** environment;
  char* name;  ///< of the ending, in the environment; there is room for the longest
};

/// While a plug-in is being loaded: how to start anew.
std::atomic<const Start*> nextStart = nullptr;
static_assert(decltype(nextStart)::is_always_lock_free);
Start preparedStart;

// How signals were before.
std::array<struct sigaction, kSignals> formerActions;
stack_t formerStack;
sigset_t formerMask;

void StartAnew(int signal);

void TakeSignalsBack() {
  for (std::size_t i = 0; i < kSignals; ++i) {
    struct sigaction action {};
    sigaction(kEndings[i].signal, &formerActions[i], &action);
    // A plug-in may have taken the signal for itself.
    if (action.sa_handler != StartAnew) sigaction(kEndings[i].signal, &action, nullptr);
  }
}

/// Returns only when the program cannot be started anew; what is ending it then does.
void StartAnew(int signal) {
  const Start* start = nextStart.exchange(nullptr);
  TakeSignalsBack();
  if (start == nullptr) return;
  for (const Ending& ending : kEndings) {
    if (ending.signal == signal && start->name != nullptr) std::strcpy(start->name, ending.name);
  }
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
  for (std::size_t i = 0; i < kSignals; ++i) {
    sigaction(kEndings[i].signal, &action, &formerActions[i]);
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
  const std::string entry = kSlash + plugin + kSlash;
  const std::size_t at = list_.find(entry);
  if (at == std::string::npos) return "";
  const std::size_t start = at + entry.size();
  std::string problem = list_.substr(start, list_.find(kSlash, start) - start);
  std::ranges::replace(problem, kNoSlash, kSlash);
  return problem;
}

void Restart::Blame(const std::string& plugin) {
  nextStart = nullptr;
  plugin_ = plugin;
  if (arguments_ == nullptr || plugin.empty()) return;
  next_ = list_ + kSlash + plugin + kSlash + kEnded + std::string(kLongestName, '\0');
  environment_[environment_.size() - 2] = next_.data();
  preparedStart = {arguments_, environment_.data(), next_.data() + next_.size() - kLongestName};
  nextStart = &preparedStart;
}

void Restart::LeaveOut(std::string problem) {
  constexpr std::size_t kEnough = 10'000;  // of a text that the system limits
  if (nextStart != nullptr) {
    std::ranges::replace(problem, kSlash, kNoSlash);
    next_ = list_ + kSlash + plugin_ + kSlash + problem.substr(0, kEnough);
    environment_[environment_.size() - 2] = next_.data();
    preparedStart.name = nullptr;
    StartAnew(0);
  }
  std::abort();
}

}  // namespace autocli
