#include "lab/memory/Copies.h"

#include <SQLiteCpp/Database.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>

#include "lab/common/Text.h"
#include "lab/model/Check.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"
#include "lab/store/LabFile.h"
#include "lab/store/Memory.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/Session.h"

namespace lab {
namespace {

void CheckIsNotLab(const std::string& path) {
  const std::string lab = LabPath();
  if (IsSameFile(path, lab) || path == lab) Fail(Quoted(path), " is the lab itself");
}

[[noreturn]] void FailToWrite(const std::string& path, int error) {
  if (error == EEXIST) Fail(Quoted(path), " is there already; --force replaces it");
  Fail("cannot write ", Quoted(path), ": ", ErrorText(error));
}

/// Fills a new file beside the one of that path, and gives it the name once all is on the disk.
void WriteWhole(const std::string& path, bool force, const std::function<void(int)>& fill) {
  CheckIsNotLab(path);
  struct stat status {};
  if (!force && lstat(path.c_str(), &status) == 0) FailToWrite(path, EEXIST);
  std::string made = path + ".XXXXXX";
  const File file(mkostemp(made.data(), O_CLOEXEC));
  if (!file.IsOpen()) FailToWrite(path, errno);
  try {
    fill(file.Get());
    if (fsync(file.Get()) != 0) FailToWrite(path, errno);
    const unsigned flags = force ? 0 : RENAME_NOREPLACE;
    if (renameat2(AT_FDCWD, made.c_str(), AT_FDCWD, path.c_str(), flags) != 0) {
      FailToWrite(path, errno);
    }
  } catch (...) {
    unlink(made.c_str());
    throw;
  }
}

/// The lab of another file beside the process's own, for reading, in the schema "other".
class OtherLab {
 public:
  OtherLab(Store& store, const std::string& path) : store_(store) {
    CheckIsNotLab(path);
    // Nothing that begins as a name of another kind than a path's.
    const std::string place = std::filesystem::absolute(path);
    try {
      CheckSound(place);
    } catch (...) {
      ThrowActionable(std::current_exception(), place);
    }
    Execute(store_, "ATTACH ? AS other", place);
  }
  ~OtherLab() { store_.GetDatabase().tryExec("DETACH other"); }
  OtherLab(const OtherLab&) = delete;
  OtherLab& operator=(const OtherLab&) = delete;

 private:
  /// As any lab is checked, in its own right.
  static void CheckSound(const std::string& path) {
    const File file = OpenFile(path, O_RDONLY);
    if (!file.IsOpen()) Fail("cannot read ", Quoted(path), ": ", ErrorText(errno));
    if (!HoldsLab(file, path)) Fail(Quoted(path), " is empty");
    Store other(path);
    const Transaction transaction(other, Access::Read);
    if (!other.IsCurrent()) {
      Fail(Quoted(path), " is a lab of version ", std::to_string(other.GetVersion()),
           "; 'KOREL_LAB=FILE autocli lab show' brings it up to date");
    }
    const auto problems = Problems(other);
    if (!problems.empty()) Fail(Quoted(path), " is no sound lab: ", problems.front());
  }

  Store& store_;
};

}  // namespace

void WriteFile(const std::string& path, const std::string& bytes, bool force) {
  WriteWhole(path, force, [&](int file) {
    errno = ENOSPC;
    if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
      FailToWrite(path, errno);
    }
  });
}

std::string ReadSmallFile(const std::string& path) {
  CheckIsNotLab(path);
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::string content(kMostFileBytes + 1, '\0');
  if (!file || (!file.read(content.data(), kMostFileBytes + 1) && file.bad())) {
    Fail("cannot read ", Quoted(path), ": ", ErrorText(errno == 0 ? EIO : errno));
  }
  content.resize(static_cast<std::size_t>(file.gcount()));
  return content;
}

void CopyLab(Store& store, int file) {
  // By the turnstile's descriptor: one more, once it is closed, would drop SQLite's locks.
  const int lab = store.GetTurnstile().GetFile().Get();
  off_t place = 0;
  ssize_t count = 0;
  do {
    count = sendfile(file, lab, &place, std::size_t{1} << 30U);
  } while (count > 0);
  if (count < 0) Fail("cannot copy the lab: ", ErrorText(errno));
}

void SaveLab(const std::string& path, bool force) {
  ReadLab([&](Store& store) { WriteWhole(path, force, [&](int file) { CopyLab(store, file); }); });
}

void LoadLab(const std::string& path) {
  try {
    LabTransaction(Access::Read).Commit();
    Store& store = Store::ForProcess();
    const OtherLab other(store, path);
    LabTransaction transaction(Access::ChangeLoosely);
    for (const auto& [name, sql] : kTables) {
      const std::string table = name;
      Execute(store, ("DELETE FROM main." + table).c_str());
      Execute(store, ("INSERT INTO main." + table + " SELECT * FROM other." + table).c_str());
    }
    transaction.Commit("loads " + path);
  } catch (...) {
    ThrowActionable();
  }
}

std::vector<Change> DifferenceFrom(const std::string& path) {
  try {
    LabTransaction(Access::Read).Commit();
    Store& store = Store::ForProcess();
    const OtherLab other(store, path);
    LabTransaction transaction(Access::Read);
    sqlite3_session* session = BeginRecording(store);
    for (const auto& [name, sql] : kTables) {
      const int result = sqlite3session_diff(session, "other", name, nullptr);
      if (result == SQLITE_OK) continue;
      sqlite3session_delete(session);
      CheckResult(result);
    }
    return InWords(store, EndRecording(session));
  } catch (...) {
    ThrowActionable();
  }
}

}  // namespace lab
