#include "lab/base/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

#include "lab/base/Text.h"

namespace lab {
namespace {

bool IsSame(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace

std::string ErrorText(int error) { return std::generic_category().message(error); }

File::~File() {
  if (descriptor_ >= 0) close(descriptor_);
}

File::File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

File& File::operator=(File&& other) noexcept {
  std::swap(descriptor_, other.descriptor_);
  return *this;
}

File OpenFile(const std::string& path, int flags) {
  return File(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0644));
}

bool IsNamed(const File& file, const std::string& path) {
  struct stat opened {};
  struct stat named {};
  return fstat(file.Get(), &opened) == 0 && stat(path.c_str(), &named) == 0 &&
         IsSame(opened, named);
}

bool IsSameFile(const std::string& path, const std::string& other) {
  struct stat one {};
  struct stat two {};
  return stat(path.c_str(), &one) == 0 && stat(other.c_str(), &two) == 0 && IsSame(one, two);
}

std::string ReadUpTo(std::size_t most, const std::string& path, const char* what) {
  std::string content(most, '\0');
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file || (!file.read(content.data(), static_cast<std::streamsize>(most)) && file.bad())) {
    Fail("cannot read ", what, Quoted(path), ": ", ErrorText(errno == 0 ? EIO : errno));
  }
  content.resize(static_cast<std::size_t>(file.gcount()));
  return content;
}

}  // namespace lab
