#pragma once

#include <string>
#include <string_view>

namespace autocli {

/// Collects text and hands it on in large pieces.
class Sink {
 public:
  virtual ~Sink() = default;

  /// The text that waits to be handed on: append to it, then call Drain().
  std::string& Buffer() { return buffer_; }
  /// Hands on what waits once it is worth a call.
  void Drain();
  /// Hands on all that waits. False when this or an earlier piece could not be written.
  bool Flush();
  /// The errno value of the first failure; 0 when there was none.
  int GetError() const { return error_; }

 private:
  /// Takes the whole text. Returns 0, or the errno value of what stopped it.
  virtual int Write(std::string_view text) = 0;

  std::string buffer_;
  int error_ = 0;
};

/// Writes to a file descriptor, which stays the caller's.
class FileSink final : public Sink {
 public:
  explicit FileSink(int file) : file_(file) {}

 private:
  int Write(std::string_view text) override;

  int file_;
};

}  // namespace autocli
