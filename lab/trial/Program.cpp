#include "lab/trial/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string_view>

namespace lab {
namespace {

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// How a child begins: reading nothing, writing to the files, in a process group of its own.
class Beginning {
 public:
  Beginning(const HeldSignals& signals, const OutputFiles& files) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setsigmask(&attributes_, &signals.GetMaskBefore());
    failure_ = posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    Send(STDOUT_FILENO, files.out);
    Send(STDERR_FILENO, files.err);
  }
  ~Beginning() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  Beginning(const Beginning&) = delete;
  Beginning& operator=(const Beginning&) = delete;

  /// The process id, or -1.
  pid_t Spawn(const std::string& program, std::vector<std::string>& words,
              std::vector<std::string>& environment) {
    pid_t child = -1;
    if (failure_ == 0) {
      failure_ = posix_spawn(&child, program.c_str(), &actions_, &attributes_,
                             Pointers(words).data(), Pointers(environment).data());
    }
    return failure_ == 0 ? child : -1;
  }

 private:
  void Send(int number, const std::string& file) {
    if (failure_ != 0) return;
    failure_ =
        posix_spawn_file_actions_addopen(&actions_, number, file.c_str(), O_WRONLY | O_CREAT, 0600);
  }

  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
  int failure_ = 0;
};

int Meaning(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

}  // namespace

HeldSignals::HeldSignals() {
  sigemptyset(&held_);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    sigaction(number, nullptr, &action);
    if (action.sa_handler != SIG_IGN) sigaddset(&held_, number);
  }
  sigaddset(&held_, SIGCHLD);  // wakes whoever waits
  sigprocmask(SIG_BLOCK, &held_, &before_);
}

HeldSignals::~HeldSignals() {
  if (signal_ != 0) raise(signal_);
  sigprocmask(SIG_SETMASK, &before_, nullptr);
}

int HeldSignals::WaitFor(pid_t child) {
  while (true) {
    int status = 0;
    const pid_t ended = waitpid(child, &status, WNOHANG);
    if (ended == child) return Meaning(status);
    if (ended < 0) return -1;
    const int number = sigwaitinfo(&held_, nullptr);
    if (number < 0 || number == SIGCHLD) continue;
    signal_ = number;
    kill(-child, SIGKILL);
  }
}

int RunWords(HeldSignals& signals, const std::string& program, std::vector<std::string> words,
             const std::map<std::string, std::string>& settings, const OutputFiles& files) {
  std::vector<std::string> environment;
  for (const auto& [name, value] : settings) environment.push_back(name + "=" + value);
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    if (!settings.contains(std::string(text.substr(0, text.find('='))))) {
      environment.emplace_back(text);
    }
  }
  const pid_t child = Beginning(signals, files).Spawn(program, words, environment);
  return child < 0 ? -1 : signals.WaitFor(child);
}

}  // namespace lab
