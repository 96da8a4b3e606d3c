#include "autocli/plugin/Watch.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <string_view>

#include "autocli/base/Escape.h"
#include "autocli/base/Fault.h"

namespace autocli {

namespace {

struct Ending {
  int signal;
  std::string_view name;
  struct sigaction former;
};
std::array<Ending, 5> endings = {{{SIGABRT, "SIGABRT", {}},
                                  {SIGBUS, "SIGBUS", {}},
                                  {SIGFPE, "SIGFPE", {}},
                                  {SIGILL, "SIGILL", {}},
                                  {SIGSEGV, "SIGSEGV", {}}}};
stack_t formerStack;

/// What is said of the plug-in that is being loaded, up to the reason.
std::string sentence;
/// Null while nobody is to blame.
std::atomic<const std::string*> blamed = nullptr;
static_assert(decltype(blamed)::is_always_lock_free);

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

void EndByExit() { EndBy("exit()"); }

}  // namespace

Watch::Watch() {
  // A plug-in that uses its stack up leaves none for the handler.
  alignas(16) static std::array<char, 1 << 16> stack;
  const stack_t own{stack.data(), 0, stack.size()};
  sigaltstack(&own, &formerStack);
  struct sigaction action {};
  action.sa_handler = EndBySignal;
  action.sa_flags = SA_ONSTACK;
  for (Ending& ending : endings) sigaction(ending.signal, &action, &ending.former);
  std::atexit(EndByExit);
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
  if (path.empty()) return;
  sentence = "error: plug-in \"" + Escaped(path) + "\" ended the program while it was loaded: ";
  blamed = &sentence;
}

void Watch::End(const std::string& reason) {
  EndBy(Escaped(reason));
  std::abort();
}

}  // namespace autocli
