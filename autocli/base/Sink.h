#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "autocli/base/Style.h"

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

  /// Auto, as it is from the start: colour on a terminal where it is welcome.
  void SetColoring(Coloring coloring) { coloring_ = coloring; }
  bool IsColored() const;
  bool IsTerminal() const { return TerminalWidth().has_value(); }
  /// The columns of the terminal that it writes to; 0 when that does not say, and without one.
  std::size_t GetColumns() const { return TerminalWidth().value_or(0); }
  /// For a text that fills the width.
  Style GetStyle() const { return {WidthFor(TerminalWidth().value_or(0)), IsColored()}; }

 private:
  /// The columns of the terminal that it writes to, 0 when that does not say; nothing when it
  /// writes to no terminal.
  virtual std::optional<std::size_t> TerminalWidth() const { return std::nullopt; }
  /// Takes the whole text. Returns 0, or the errno value of what stopped it.
  virtual int Write(std::string_view text) = 0;

  std::string buffer_;
  int error_ = 0;
  Coloring coloring_ = Coloring::Auto;
};

/// Writes to a file descriptor, which stays the caller's.
class FileSink final : public Sink {
 public:
  explicit FileSink(int file) : file_(file) {}

 private:
  std::optional<std::size_t> TerminalWidth() const override;
  int Write(std::string_view text) override;

  int file_;
};

}  // namespace autocli
