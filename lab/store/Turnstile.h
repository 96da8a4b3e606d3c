#pragma once

#include <string>

#include "lab/store/LabFile.h"

namespace lab {

/// What a transaction is for.
enum class Access {
  Read,
  Change,
  /// Many rows at once: until its end a row may refer to one that is not there. Whoever does this
  /// checks them before the commit.
  ChangeLoosely,
};

/// Lets the transactions of all processes into a lab in the order in which they come: those that
/// read at the same time as others that do, one that changes alone.
///
/// SQLite's own locks are asked for again and again by whoever waits, and under load some never
/// get them. Here the kernel keeps the order. There are two locks on bytes of the file that SQLite
/// does not use, one to enter and one to be served: whoever was served has to enter again, after
/// those who wait there. They belong to the descriptor, not to the process, so that other
/// descriptors of the file that are closed leave them alone.
class Turnstile {
 public:
  /// Opens the lab's file, and makes it when it is missing and may be made. A file that cannot be
  /// written serves those that read. Throws KorelCtlException when it cannot be opened.
  explicit Turnstile(const std::string& path);

  /// Waits for this transaction's turn. Throws KorelCtlException when the command's patience ends.
  void Enter(Access access);
  void Leave() noexcept;

  const File& GetFile() const { return file_; }
  /// The path still names the file that was opened.
  bool IsInPlace() const { return IsNamed(file_, path_); }

 private:
  std::string path_;
  File file_;
  bool isWritable_ = false;
};

}  // namespace lab
