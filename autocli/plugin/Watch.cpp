#include "autocli/plugin/Watch.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "autocli/base/Escape.h"
#include "autocli/base/Fault.h"

namespace autocli {

namespace {

struct Ending {
  int signal;
  std::string_view name;
  struct sigaction former;
};
std::array<Ending, 7> endings = {{{SIGABRT, "SIGABRT", {}},
                                  {SIGBUS, "SIGBUS", {}},
                                  {SIGFPE, "SIGFPE", {}},
                                  {SIGILL, "SIGILL", {}},
                                  {SIGSEGV, "SIGSEGV", {}},
                                  {SIGSYS, "SIGSYS", {}},
                                  {SIGTRAP, "SIGTRAP", {}}}};
stack_t formerStack;

/// What is said of whoever is to blame, up to the reason; null while nobody is.
std::atomic<const std::string*> blamed = nullptr;
static_assert(decltype(blamed)::is_always_lock_free);
bool isLoading = false;

/// These outlive what plug-ins leave to be done at the end of the process.
std::string& named = *new std::string;
std::string& sentence = *new std::string;
/// What is said then of each plug-in, in the order of loading, and how many had no turn yet.
std::vector<std::string>& atEnd = *new std::vector<std::string>;
std::size_t left = 0;

void Say(std::string_view text) {
  const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
  static_cast<void>(written);
}

/// Returns when nobody is to blame.
void EndBy(std::string_view reason) {
  const std::string* beginning = blamed.exchange(nullptr);
  if (beginning == nullptr) return;
  Say(*beginning);
  Say(reason);
  Say("\n");
  _exit(MeaningOf(FaultKind::Plugin).status);
}

void EndBySignal(int signal) {
  for (const Ending& ending : endings) {
    if (ending.signal == signal) EndBy(ending.name);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void EndByQuickExit() { EndBy("quick_exit()"); }

/// Unless `areOursAlone`, those stay as they are that somebody handles.
void TakeSignals(bool areOursAlone) {
  // A plug-in that uses its stack up leaves none for the handler.
  alignas(16) static std::array<char, 1 << 16> stack;
  const stack_t own{stack.data(), 0, stack.size()};
  sigaltstack(&own, &formerStack);
  struct sigaction action {};
  action.sa_handler = EndBySignal;
  action.sa_flags = SA_ONSTACK;
  for (Ending& ending : endings) {
    sigaction(ending.signal, &action, &ending.former);
    const bool isFree = areOursAlone || ending.former.sa_handler == SIG_DFL;
    if (!isFree) sigaction(ending.signal, &ending.former, nullptr);
  }
}

/// Runs at the end of the process, after what the plug-ins have left to be done then.
void BlameNobody() {
  if (isLoading) EndBy("exit()");
  blamed = nullptr;
}

/// Runs at the end of the process before what the plug-in has left to be done that was loaded last
/// and had no turn yet. All that is needed is there: memory may have run out.
void BlameNext() {
  if (isLoading) EndBy("exit()");
  if (blamed == nullptr) TakeSignals(false);
  if (left != 0) blamed = &atEnd[--left];
}

}  // namespace

Watch::Watch() {
  TakeSignals(true);
  std::atexit(BlameNobody);
  std::at_quick_exit(EndByQuickExit);
}

Watch::~Watch() {
  Blame("");
  for (const Ending& ending : endings) {
    struct sigaction action {};
    sigaction(ending.signal, &ending.former, &action);
    // A plug-in may have taken the signal for itself.
    if (action.sa_handler != EndBySignal) sigaction(ending.signal, &action, nullptr);
  }
  sigaltstack(&formerStack, nullptr);
}

void Watch::Blame(const std::string& path) {
  blamed = nullptr;
  if (std::exchange(isLoading, !path.empty())) {
    atEnd.push_back(named + "broke when the program ended: ");
    if (std::atexit(BlameNext) != 0) atEnd.pop_back();
    left = atEnd.size();
  }
  if (path.empty()) return;
  named = "error: plug-in \"" + Escaped(path) + "\" ";
  sentence = named + "ended the program while it was loaded: ";
  blamed = &sentence;
}

void Watch::End(const std::string& reason) {
  EndBy(Escaped(reason));
  std::abort();
}

}  // namespace autocli
