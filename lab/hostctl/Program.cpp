#include "lab/hostctl/Program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>
#include <vector>

#include "lab/common/Text.h"
#include "lab/model/HostRoot.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

constexpr int kTimeoutMs = 60'000;

std::vector<std::string> CutAtBlanks(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream stream(text);
  // Or a word for which there was no memory would pass for the end.
  stream.exceptions(std::ios::badbit);
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// The process id, or -1.
pid_t Spawn(const std::string& program, std::vector<std::string> words, char* const* environment,
            const OutputFiles& files) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  int failure = posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  for (const auto& [number, file] :
       {std::pair(STDOUT_FILENO, &files.out), {STDERR_FILENO, &files.err}}) {
    if (failure != 0 || file->empty()) continue;
    failure =
        posix_spawn_file_actions_addopen(&actions, number, file->c_str(), O_WRONLY | O_CREAT, 0600);
  }
  pid_t child = -1;
  if (failure == 0) {
    failure = posix_spawn(&child, program.c_str(), &actions, nullptr, Pointers(words).data(),
                          environment);
  }
  posix_spawn_file_actions_destroy(&actions);
  return failure == 0 ? child : -1;
}

/// False when the time is over before the child is.
bool EndsInTime(pid_t child) {
  const int descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
  if (descriptor < 0) return true;  // an old kernel: wait without a limit
  pollfd ended{descriptor, POLLIN, 0};
  int ready = -1;
  do {
    ready = poll(&ended, 1, kTimeoutMs);
  } while (ready < 0 && errno == EINTR);
  close(descriptor);
  return ready != 0;
}

/// The exit status, 128 and the signal's number, or -1.
int StatusOf(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

int RunProgram(const std::string& program, const std::string& arguments, bool wait,
               bool showOutput) {
  std::vector<std::string> words = CutAtBlanks(arguments);
  words.insert(words.begin(), program);
  const std::string sink = showOutput ? "" : "/dev/null";
  const pid_t child = Spawn(program, std::move(words), environ, {sink, sink});
  if (child < 0) return -1;
  if (!wait) return 0;
  const bool isInTime = EndsInTime(child);
  if (!isInTime) kill(child, SIGKILL);
  const int status = StatusOf(child);
  return isInTime ? status : -1;
}

int RunWords(const std::string& program, std::vector<std::string> words,
             const std::map<std::string, std::string>& settings, const OutputFiles& files) {
  std::vector<std::string> environment;
  for (const auto& [name, value] : settings) environment.push_back(name + "=" + value);
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    if (!settings.contains(std::string(text.substr(0, text.find('='))))) {
      environment.emplace_back(text);
    }
  }
  const pid_t child = Spawn(program, std::move(words), Pointers(environment).data(), files);
  if (child < 0) return -1;
  const auto interrupt = signal(SIGINT, SIG_IGN);
  const int status = StatusOf(child);
  signal(SIGINT, interrupt);
  return status;
}

void RunTraceDaemon(const std::string& argument) {
  const std::string script =
      InLab([](Store& store) { return PlaceUnderRoot(store, CurrentHost(store), kTraceDaemon); });
  const int status = RunProgram(script, argument, true, false);
  if (status == 0) return;
  Fail(Quoted(script), " ", argument, status < 0 ? " could not be run" : " failed with status ",
       status < 0 ? "" : std::to_string(status));
}

}  // namespace lab
