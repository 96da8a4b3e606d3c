#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "autocli/base/Escape.h"
#include "autocli/base/File.h"
#include "platform/autocli/AutoCli.h"

namespace Corvex::AutoCli {

namespace {

using autocli::File;

struct Pipe {
  File read;
  File write;
};

/// A pipe that children do not inherit by accident; without ends when there is none to be had.
Pipe NewPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  return {File(ends[0]), File(ends[1])};
}

/// The bytes that some shell takes for more than themselves. The equals sign is one of them: it
/// assigns in front of a command, and a shell may expand it at the head of any word.
bool MeansSomething(char c) {
  constexpr std::string_view kSpecial = "|&;<>()$`\\\"'*?[]#~={}!%^";
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f ||
         kSpecial.find(c) != std::string_view::npos;
}

std::vector<std::string> Words(const std::string& line) {
  std::vector<std::string> words;
  for (std::size_t at = 0; (at = line.find_first_not_of(' ', at)) != std::string::npos;) {
    const std::size_t end = std::min(line.find(' ', at), line.size());
    words.push_back(line.substr(at, end - at));
    at = end;
  }
  return words;
}

/// Starts the program with these ends for its standard streams. Returns its process id, or -1.
pid_t Start(std::vector<std::string>& words, const File& input, const File& output) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  std::string path = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";
  std::string locale = "LC_ALL=C";
  const std::array<char*, 3> environment = {path.data(), locale.data(), nullptr};

  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  // What cannot be noted for want of memory must not be left out.
  int error = posix_spawn_file_actions_adddup2(&actions, input.Number(), STDIN_FILENO);
  if (error == 0) {
    error = posix_spawn_file_actions_adddup2(&actions, output.Number(), STDOUT_FILENO);
  }
  if (error == 0) {
    error = posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  // While it is fed, this thread keeps SIGPIPE back, and the process ignores SIGXFSZ; the program
  // is to have them as usual.
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  sigaddset(&signals, SIGXFSZ);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  pid_t child = -1;
  if (error == 0) {
    error = posix_spawn(&child, words[0].c_str(), &actions, &attributes, arguments.data(),
                        environment.data());
  }
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? child : -1;
}

/// Keeps SIGPIPE from this thread as long as it lives, so that a program that does not read its
/// input does not end the caller.
class PipeSignalHeldBack {
 public:
  PipeSignalHeldBack() {
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGPIPE) == 1;
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  ~PipeSignalHeldBack() {
    const timespec now{};
    if (!wasPending_) sigtimedwait(&pipe_, nullptr, &now);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  PipeSignalHeldBack(const PipeSignalHeldBack&) = delete;
  PipeSignalHeldBack& operator=(const PipeSignalHeldBack&) = delete;

 private:
  bool wasPending_ = false;
  sigset_t pipe_;
  sigset_t before_;
};

void Feed(File& file, std::string_view& input) {
  const ssize_t written = write(file.Number(), input.data(), input.size());
  if (written > 0) input.remove_prefix(static_cast<std::size_t>(written));
  const bool failed = written < 0 && errno != EAGAIN && errno != EINTR;
  if (failed || input.empty()) file.Close();
}

void Collect(File& file, std::string& output) {
  std::array<char, 16384> piece;
  const ssize_t size = read(file.Number(), piece.data(), piece.size());
  if (size > 0) {
    output.append(piece.data(), static_cast<std::size_t>(size));
  } else if (size == 0 || (errno != EINTR && errno != EAGAIN)) {
    file.Close();
  }
}

/// Feeds and collects at the same time, for either side may wait for the other.
void Converse(File toChild, File fromChild, std::string_view input, std::string& output) {
  fcntl(toChild.Number(), F_SETFL, O_NONBLOCK);
  if (input.empty()) toChild.Close();
  while (fromChild.Number() >= 0) {
    std::array<pollfd, 2> ends = {
        {{fromChild.Number(), POLLIN, 0}, {toChild.Number(), POLLOUT, 0}}};
    if (poll(ends.data(), ends.size(), -1) < 0 && errno != EINTR) return;
    if (ends[1].revents != 0) Feed(toChild, input);
    if (ends[0].revents != 0) Collect(fromChild, output);
  }
}

int StatusOf(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// A setting of the environment, which somebody else may have made when privileges are raised.
std::string Setting(const char* name) {
  const char* value = secure_getenv(name);
  return value == nullptr ? "" : value;
}

/// Adds the line to the record, if one is kept. False when that failed.
bool Record(const std::string& commandLine) {
  const std::string path = Setting(kShellRecordVariable);
  if (path.empty()) return true;
  // Without waiting for whoever may read a pipe.
  const File file(
      open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600));
  const std::string line = autocli::Escaped(commandLine) + "\n";
  const ssize_t written = write(file.Number(), line.data(), line.size());
  return written == static_cast<ssize_t>(line.size());
}

}  // namespace

int AutoCli_ShellCmd(const std::string& commandLine, std::string& output,
                     const std::string& input) {
  output.clear();
  const PipeSignalHeldBack noSignal;
  if (!Record(commandLine) || Setting(kShellStartVariable) == "no") return -1;
  if (std::ranges::any_of(commandLine, MeansSomething)) return -1;
  std::vector<std::string> words = Words(commandLine);
  if (words.empty() || words[0][0] != '/') return -1;
  Pipe feeding = NewPipe();
  Pipe collecting = NewPipe();
  if (feeding.read.Number() < 0 || collecting.read.Number() < 0) return -1;
  const pid_t child = Start(words, feeding.read, collecting.write);
  if (child < 0) return -1;
  feeding.read.Close();
  collecting.write.Close();
  Converse(std::move(feeding.write), std::move(collecting.read), input, output);
  return StatusOf(child);
}

}  // namespace Corvex::AutoCli
