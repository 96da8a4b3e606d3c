#include "lab/store/LabFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "lab/common/Text.h"

namespace lab {
namespace {

constexpr std::string_view kMagic{"SQLite format 3\0", 16};
constexpr std::string_view kJournalMagic{"\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8};
constexpr std::size_t kPagesBeforePlace = 16;
constexpr std::size_t kHeaderSize = 100;
constexpr std::size_t kApplicationIdPlace = 68;

std::string ErrnoText() {
  std::array<char, 128> buffer{};
  return strerror_r(errno, buffer.data(), buffer.size());
}

/// A directory from the environment; empty when the variable is not set or empty.
std::string DirectoryFrom(const char* variable) {
  const char* value = Environment(variable);
  if (value == nullptr || *value == '\0') return {};
  if (*value != '/') Fail(variable, " must be an absolute path, got ", Quoted(value));
  return value;
}

/// A descriptor that closes itself.
class File {
 public:
  // Not blocking, lest a named pipe holds the caller up before it is seen to be one.
  explicit File(const std::string& path)
      : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ~File() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  int Get() const { return descriptor_; }

 private:
  int descriptor_;
};

std::uint32_t BigEndian(const char* bytes) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value << 8U | static_cast<unsigned char>(bytes[i]);
  return value;
}

/// The file's first transaction was not finished: the journal, as soon as SQLite plays it back,
/// leaves an empty file. Whoever lost power then may have written any part of the file.
bool IsUnfinished(const std::string& path) {
  const File journal(path + "-journal");
  std::array<char, kPagesBeforePlace + 4> header{};
  return pread(journal.Get(), header.data(), header.size(), 0) ==
             static_cast<ssize_t>(header.size()) &&
         std::string_view(header.data(), kJournalMagic.size()) == kJournalMagic &&
         BigEndian(header.data() + kPagesBeforePlace) == 0;
}

}  // namespace

std::string LabPath() {
  if (const char* value = Environment("KOREL_LAB")) {
    const std::string_view path = value;
    if (path.empty()) Fail("KOREL_LAB is set but empty; give the absolute path of the lab file");
    if (path.front() != '/') Fail("KOREL_LAB must be an absolute path, got ", Quoted(path));
    if (path.back() == '/') Fail("KOREL_LAB must name a file, got the directory ", Quoted(path));
    return std::string(path);
  }
  if (const std::string state = DirectoryFrom("XDG_STATE_HOME"); !state.empty()) {
    return state + "/korel/lab.db";
  }
  if (const std::string home = DirectoryFrom("HOME"); !home.empty()) {
    return home + "/.local/state/korel/lab.db";
  }
  Fail("no place for the lab: set KOREL_LAB to the absolute path of its file");
}

bool MayChange() { return Environment("AUTOCLI_COMPLETING") == nullptr; }

std::string HowToReplace(const std::string& path) {
  return Tovrin::Misc::StrCat(
      "; choose another file with KOREL_LAB, or make it anew with 'autocli lab init --force' (",
      Quoted(path + ".old"), " then keeps what is there)");
}

bool HoldsLab(const std::string& path) {
  const File file(path);
  if (file.Get() < 0) {
    if (errno == ENOENT) return false;
    Fail("cannot open the lab ", Quoted(path), ": ", ErrnoText());
  }
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) Fail("cannot read the lab ", Quoted(path), ErrnoText());
  if (!S_ISREG(status.st_mode)) {
    Fail("the lab ", Quoted(path), " is not a file; set KOREL_LAB to the path of one");
  }
  if (status.st_size == 0) return false;
  std::array<char, kHeaderSize> header{};
  const ssize_t size = pread(file.Get(), header.data(), header.size(), 0);
  if (size < static_cast<ssize_t>(kHeaderSize) ||
      std::string_view(header.data(), kMagic.size()) != kMagic) {
    if (IsUnfinished(path)) return false;
    throw UnusableLab(Quoted(path) + " is not a lab" + HowToReplace(path));
  }
  if (BigEndian(header.data() + kApplicationIdPlace) != kApplicationId) {
    throw UnusableLab(Quoted(path) + " is a database of another program" + HowToReplace(path));
  }
  return true;
}

void MakeDirectoryOf(const std::string& path) {
  const std::string directory = path.substr(0, path.rfind('/'));
  if (directory.empty() || mkdir(directory.c_str(), 0700) == 0 || errno == EEXIST) return;
  if (errno == ENOENT) {
    MakeDirectoryOf(directory);
    if (mkdir(directory.c_str(), 0700) == 0 || errno == EEXIST) return;
  }
  Fail("cannot make the directory ", Quoted(directory), " of the lab: ", ErrnoText());
}

void SetAside(const std::string& path) {
  const std::string old = path + ".old";
  // The journals go first: one that stayed behind would be played into the new file.
  constexpr std::array kSuffixes = {"-journal", "-wal", "-shm", ""};
  // Those of an earlier one do, too. Without a file beside them, they are this one's, from a run
  // that was stopped here.
  if (access(old.c_str(), F_OK) == 0) {
    for (const char* suffix : kSuffixes) std::remove((old + suffix).c_str());
  }
  for (const char* suffix : kSuffixes) {
    const std::string from = path + suffix;
    const std::string to = old + suffix;
    if (std::rename(from.c_str(), to.c_str()) != 0 && errno != ENOENT) {
      Fail("cannot rename ", Quoted(from), " to ", Quoted(to), ": ", ErrnoText());
    }
  }
}

}  // namespace lab
