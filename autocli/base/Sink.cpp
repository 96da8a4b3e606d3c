#include "autocli/base/Sink.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>

namespace autocli {

namespace {

constexpr std::size_t kPiece = std::size_t{64} * 1024;

}  // namespace

void Sink::Drain() {
  if (buffer_.size() >= kPiece) Flush();
}

bool Sink::Flush() {
  if (error_ == 0 && !buffer_.empty()) error_ = Write(buffer_);
  buffer_.clear();
  return error_ == 0;
}

bool Sink::IsColored() const {
  if (coloring_ != Coloring::Auto) return coloring_ == Coloring::Always;
  return IsColorWelcome() && TerminalWidth().has_value();
}

std::optional<std::size_t> FileSink::TerminalWidth() const {
  winsize size{};
  if (ioctl(file_, TIOCGWINSZ, &size) != 0) return std::nullopt;
  return size.ws_col;
}

int FileSink::Write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file_, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      // Somebody who shares the terminal made it non-blocking.
      pollfd waiting{file_, POLLOUT, 0};
      poll(&waiting, 1, -1);
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace autocli
