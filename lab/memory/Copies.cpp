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
#include <memory>
#include <optional>

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

/// The lab of another file, for reading, once it was checked as any lab is.
class OtherLab {
 public:
  explicit OtherLab(const std::string& path)
      // Nothing that begins as a name of another kind than a path's.
      : path_(std::filesystem::absolute(path)) {
    CheckIsNotLab(path);
    try {
      Open();
    } catch (...) {
      ThrowActionable(std::current_exception(), path_);
    }
  }

  const std::string& GetPath() const { return path_; }
  Store& GetStore() { return *store_; }

 private:
  void Open() {
    const File file = OpenFile(path_, O_RDONLY);
    if (!file.IsOpen()) Fail("cannot read ", Quoted(path_), ": ", ErrorText(errno));
    if (!HoldsLab(file, path_)) Fail(Quoted(path_), " is empty");
    store_.emplace(path_);
    reading_.emplace(*store_, Access::Read);
    if (!store_->IsCurrent()) {
      Fail(Quoted(path_), " is a lab of version ", std::to_string(store_->GetVersion()),
           "; 'KOREL_LAB=FILE autocli lab show' brings it up to date");
    }
    const auto problems = Problems(*store_);
    if (!problems.empty()) Fail(Quoted(path_), " is no sound lab: ", problems.front());
  }

  std::string path_;
  std::optional<Store> store_;
  std::optional<Transaction> reading_;
};

struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using RawStatement = std::unique_ptr<sqlite3_stmt, Finalize>;

RawStatement Prepare(Store& store, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  CheckResult(
      sqlite3_prepare_v2(store.GetDatabase().getHandle(), sql.c_str(), -1, &statement, nullptr));
  return RawStatement(statement);
}

/// Copies the rows, value by value. One statement over both files would write to the other's too.
void CopyRows(Store& from, Store& to, const std::string& table) {
  const RawStatement rows = Prepare(from, "SELECT * FROM " + table);
  const int columns = sqlite3_column_count(rows.get());
  std::string places = "?";
  for (int i = 1; i < columns; ++i) places += ", ?";
  const RawStatement insert = Prepare(to, "INSERT INTO " + table + " VALUES (" + places + ")");
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(rows.get())) == SQLITE_ROW) {
    for (int i = 0; i < columns; ++i) {
      CheckResult(sqlite3_bind_value(insert.get(), i + 1, sqlite3_column_value(rows.get(), i)));
    }
    CheckResult(sqlite3_step(insert.get()));
    CheckResult(sqlite3_reset(insert.get()));
  }
  CheckResult(result);
}

/// Another lab in the schema "other", beside the process's own.
class Attached {
 public:
  Attached(Store& store, const std::string& path) : store_(store) {
    Execute(store_, "ATTACH ? AS other", path);
  }
  ~Attached() { store_.GetDatabase().tryExec("DETACH other"); }
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;

 private:
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
    OtherLab other(path);
    LabTransaction transaction(Access::ChangeLoosely);
    Store& store = transaction.GetStore();
    for (const auto& [name, sql] : kTables) {
      const std::string table = name;
      Execute(store, ("DELETE FROM " + table).c_str());
      CopyRows(other.GetStore(), store, table);
    }
    transaction.Commit([&] { return "load " + path; });
  } catch (...) {
    ThrowActionable();
  }
}

std::vector<Change> DifferenceFrom(const std::string& path) {
  try {
    OtherLab other(path);
    LabTransaction(Access::Read).Commit();
    Store& store = Store::ForProcess();
    const Attached attached(store, other.GetPath());
    const LabTransaction transaction(Access::Read);
    sqlite3_session* session = BeginRecording(store);
    for (const auto& [name, sql] : kTables) {
      const int result = sqlite3session_diff(session, "other", name, nullptr);
      if (result == SQLITE_OK) continue;
      EndRecording(session);
      CheckResult(result);
    }
    return InWords(store, EndRecording(session));
  } catch (...) {
    ThrowActionable();
  }
}

}  // namespace lab
