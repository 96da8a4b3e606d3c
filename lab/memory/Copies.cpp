#include "lab/memory/Copies.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>

#include "lab/base/Text.h"
#include "lab/model/Check.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"
#include "lab/store/Attached.h"
#include "lab/store/LabFile.h"

namespace lab {
namespace {

void CheckIsNotLab(const std::string& path) {
  if (path.empty()) Fail("the name of the file is empty");
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
      : path_(std::filesystem::absolute(Checked(path))) {
    try {
      Open();
    } catch (...) {
      ThrowActionable(std::current_exception(), path_);
    }
  }

  const std::string& GetPath() const { return path_; }

 private:
  static const std::string& Checked(const std::string& path) {
    CheckIsNotLab(path);
    return path;
  }

  void Open() {
    const File file = OpenFile(path_, O_RDONLY);
    if (!file.IsOpen()) Fail("cannot read ", Quoted(path_), ": ", ErrorText(errno));
    if (!HoldsLab(file, path_)) Fail(Quoted(path_), " is empty");
    store_.emplace(path_);
    reading_.emplace(*store_, Access::Read);
    if (!store_->IsCurrent()) {
      Fail(Quoted(path_), " is a lab of version ", std::to_string(store_->GetVersion()),
           "; 'KOREL_LAB=", path_, " autocli lab show' brings it up to date");
    }
    const auto problems = Problems(*store_);
    if (!problems.empty()) Fail(Quoted(path_), " is no sound lab: ", problems.front());
  }

  std::string path_;
  std::optional<Store> store_;
  std::optional<Transaction> reading_;
};

/// Runs `work(LabTransaction&, const Attached&)` in a transaction on the lab, with the other one
/// attached.
template <typename Work>
auto WithOther(Access access, const std::string& path, const Work& work) {
  try {
    OtherLab other(path);
    Store& store = Store::ForProcess();
    LabTransaction(Access::Read, store).Commit();  // makes it when it is not there
    const Attached attached(store, other.GetPath());
    LabTransaction transaction(access, store);
    return work(transaction, attached);
  } catch (...) {
    ThrowActionable();
  }
}

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
  return ReadUpTo(kMostFileBytes + 1, path);
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
  WithOther(Access::ChangeLoosely, path, [&](LabTransaction& transaction, const Attached& other) {
    Store& store = transaction.GetStore();
    const Changeset difference = other.Difference();
    const bool isApplied = Apply(store, Inverted(store, difference));
    if (!isApplied) throw std::logic_error("the difference of two labs is not theirs");
    other.TakeFaultCalls();
    // Of equal rows the count alone may differ.
    if (difference.empty()) return transaction.CommitUnremembered();
    transaction.Commit([&] { return "loads " + path; });
  });
}

std::vector<FieldChange> DifferenceFrom(const std::string& path) {
  return WithOther(Access::Read, path, [](LabTransaction& transaction, const Attached& other) {
    return InWords(transaction.GetStore(), other.Difference());
  });
}

}  // namespace lab
