#pragma once

#include <unistd.h>

#include <utility>

namespace autocli {

/// A file descriptor that is closed at the latest when it goes out of scope; a negative number is
/// none.
class File {
 public:
  File() = default;
  explicit File(int number) : number_(number) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  File(File&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  File& operator=(File&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~File() { Close(); }

  void Close() {
    if (number_ >= 0) close(number_);
    number_ = -1;
  }
  int Number() const { return number_; }
  /// Hands the descriptor over.
  int Release() { return std::exchange(number_, -1); }

 private:
  int number_ = -1;
};

}  // namespace autocli
