#pragma once

#include <string>

namespace lab {

/// What the error number says.
std::string ErrorText(int error);

/// A descriptor, closed at its end.
class File {
 public:
  explicit File(int descriptor = -1) : descriptor_(descriptor) {}
  ~File();
  File(File&& other) noexcept;
  File& operator=(File&& other) noexcept;

  bool IsOpen() const { return descriptor_ >= 0; }
  int Get() const { return descriptor_; }

 private:
  int descriptor_;
};

/// Opens the file with those flags, without following a pipe into a wait. Not open when that fails;
/// errno says why.
File OpenFile(const std::string& path, int flags);

/// The path still names the file that was opened.
bool IsNamed(const File& file, const std::string& path);

/// The two names are of one file. Opens neither: closing the lab's file would drop SQLite's locks.
bool IsSameFile(const std::string& path, const std::string& other);

/// What a file holds, which may be a pipe; of a longer one that many bytes. Throws
/// KorelCtlException; `what` stands before the path in its message.
std::string ReadUpTo(std::size_t most, const std::string& path, const char* what = "");

}  // namespace lab
