#include "lab/store/LabFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>

#include "lab/base/Text.h"

namespace lab {
namespace {

constexpr std::string_view kMagic{"SQLite format 3\0", 16};
constexpr std::string_view kJournalMagic{"\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8};
constexpr std::size_t kPagesBeforePlace = 16;
constexpr std::size_t kHeaderSize = 100;
constexpr std::size_t kPageSizePlace = 16;
constexpr std::size_t kJournalModePlace = 18;
constexpr std::uint32_t kRollbackJournal = 0x0101;  // to write it, and to read it
constexpr std::size_t kPageCountPlace = 28;
constexpr std::size_t kEncodingPlace = 56;
constexpr std::uint32_t kUtf8 = 1;  // 0 as long as there is no table
constexpr std::size_t kApplicationIdPlace = 68;

/// Journals go first: one that stayed would be played into the new file.
constexpr std::array kSuffixes = {"-journal", "-wal", "-shm", ""};

/// A directory from the environment; empty when the variable is not set or empty.
std::string DirectoryFrom(const char* variable) {
  const char* value = Environment(variable);
  if (value == nullptr || *value == '\0') return {};
  if (*value != '/') Fail(variable, " must be an absolute path, got ", Quoted(value));
  return value;
}

std::uint32_t BigEndian(const char* bytes, int size = 4) {
  std::uint32_t value = 0;
  for (int i = 0; i < size; ++i) value = value << 8U | static_cast<unsigned char>(bytes[i]);
  return value;
}

/// The file's first transaction was not finished: the journal, as soon as SQLite plays it back,
/// leaves an empty file. Whoever lost power then may have written any part of the file.
bool IsUnfinished(const std::string& path) {
  const File journal = OpenFile(path + "-journal", O_RDONLY);
  std::array<char, kPagesBeforePlace + 4> header{};
  return pread(journal.Get(), header.data(), header.size(), 0) ==
             static_cast<ssize_t>(header.size()) &&
         std::string_view(header.data(), kJournalMagic.size()) == kJournalMagic &&
         BigEndian(header.data() + kPagesBeforePlace) == 0;
}

/// A transaction on several databases ends its journal with the name of another file, which SQLite
/// deletes when nothing refers to it any more. A lab has no such transactions.
bool HasForeignJournal(const std::string& path) {
  const File journal = OpenFile(path + "-journal", O_RDONLY);
  std::array<char, kJournalMagic.size()> end{};
  const off_t place = lseek(journal.Get(), -static_cast<off_t>(end.size()), SEEK_END);
  return place >= 0 &&
         pread(journal.Get(), end.data(), end.size(), place) == static_cast<ssize_t>(end.size()) &&
         std::string_view(end.data(), end.size()) == kJournalMagic;
}

bool IsThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

std::string NameAside(const std::string& path) {
  std::string name = path + ".old";
  for (int number = 2; IsThere(name); ++number) name = path + ".old." + std::to_string(number);
  return name;
}

void RenameAside(const std::string& path) {
  const std::string aside = NameAside(path);
  for (const char* suffix : kSuffixes) {
    const std::string from = path + suffix;
    const std::string to = aside + suffix;
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) != 0 &&
        errno != ENOENT) {
      Fail("cannot rename ", Quoted(from), " to ", Quoted(to), ": ", ErrorText(errno));
    }
  }
}

/// Waits until no other process sets the file of that path aside, and keeps them off until its end.
/// Not open when there is no file.
File AloneWith(const std::string& path) {
  while (true) {
    File file = OpenFile(path, O_RDWR);
    if (!file.IsOpen()) return file;
    flock lock{};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_len = 1;
    while (fcntl(file.Get(), F_OFD_SETLKW, &lock) != 0 && errno == EINTR) {
    }
    // Whoever was waited for may have put another file there.
    if (IsNamed(file, path)) return file;
  }
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

bool MayChange() {
  const char* completing = Environment("AUTOCLI_COMPLETING");
  return completing == nullptr || completing != std::to_string(getpid());
}

UnusableLab::UnusableLab(const std::string& path, const std::string& problem)
    : KorelCtlException(path != LabPath()
                            ? problem
                            : problem +
                                  "; choose another file with KOREL_LAB, or replace it with "
                                  "'autocli lab init --force', which keeps what is there as " +
                                  Quoted(NameAside(path))) {}

void FailNotFile(const std::string& path) {
  Fail("the lab ", Quoted(path), " is not a file; set KOREL_LAB to the path of one");
}

bool HoldsLab(const File& file, const std::string& path) {
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) Fail("cannot read ", Quoted(path), ": ", ErrorText(errno));
  if (!S_ISREG(status.st_mode)) FailNotFile(path);
  if (HasForeignJournal(path)) {
    throw UnusableLab(path, "the journal of " + Quoted(path) + " is of another program");
  }
  if (status.st_size == 0) return false;
  std::array<char, kHeaderSize> header{};
  const ssize_t size = pread(file.Get(), header.data(), header.size(), 0);
  if (size < static_cast<ssize_t>(kHeaderSize) ||
      std::string_view(header.data(), kMagic.size()) != kMagic) {
    if (IsUnfinished(path)) return false;
    throw UnusableLab(path, Quoted(path) + " is not a lab");
  }
  if (BigEndian(header.data() + kApplicationIdPlace) != kApplicationId ||
      BigEndian(header.data() + kEncodingPlace) > kUtf8) {
    throw UnusableLab(path, Quoted(path) + " is a database of another program");
  }
  if (BigEndian(header.data() + kJournalModePlace, 2) != kRollbackJournal) {
    throw UnusableLab(path, Quoted(path) + " has a write-ahead log, which no lab has");
  }
  return true;
}

std::string MissingPart(const File& file) {
  struct stat status {};
  std::array<char, kHeaderSize> header{};
  if (fstat(file.Get(), &status) != 0 || pread(file.Get(), header.data(), header.size(), 0) < 0) {
    return {};
  }
  const std::uint32_t pageSize = BigEndian(header.data() + kPageSizePlace, 2);
  const std::uint64_t whole =
      std::uint64_t{pageSize == 1 ? 65536 : pageSize} * BigEndian(header.data() + kPageCountPlace);
  const auto size = static_cast<std::uint64_t>(status.st_size);
  if (size >= whole) return {};
  return "has " + std::to_string(size) + " of its " + std::to_string(whole) + " bytes";
}

void MakeDirectoryOf(const std::string& path) {
  const std::string directory = path.substr(0, path.rfind('/'));
  if (directory.empty() || mkdir(directory.c_str(), 0700) == 0 || errno == EEXIST) return;
  if (errno == ENOENT) {
    MakeDirectoryOf(directory);
    if (mkdir(directory.c_str(), 0700) == 0 || errno == EEXIST) return;
  }
  Fail("cannot make the directory ", Quoted(directory), " of the lab: ", ErrorText(errno));
}

void SetAside(const std::string& path, const std::function<bool()>& isStillUnusable) {
  const File alone = AloneWith(path);
  if (alone.IsOpen() && isStillUnusable()) RenameAside(path);
}

}  // namespace lab
