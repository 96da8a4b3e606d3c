#include "lab/trial/Trial.h"

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "lab/common/Text.h"
#include "lab/hostctl/Program.h"
#include "lab/model/HostRoot.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTrialMark = "KOREL_LAB_TRIAL";

/// A folder for its owner alone, which goes with the object.
class PrivateFolder {
 public:
  PrivateFolder() : path_(fs::temp_directory_path() / "autocli-try-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) Fail("cannot make a directory like ", Quoted(path_));
  }
  ~PrivateFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  std::string At(const char* name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

std::vector<Entry> EntriesOf(const std::string& path) {
  Store store(path);
  std::vector<Entry> entries = RowsOf(store);
  const std::vector<Entry> files = FilesOf(store);
  entries.insert(entries.end(), files.begin(), files.end());
  return entries;
}

/// Within a transaction: copies the lab, as this transaction sees it, to a file of that name.
void CopyLab(Store& store, const std::string& path) {
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
      sqlite3_serialize(store.GetDatabase().getHandle(), "main", &size, 0), sqlite3_free);
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.get()), static_cast<std::streamsize>(size));
  file.close();
  if (!bytes || !file) Fail("cannot write a copy of the lab to ", Quoted(path));
  const std::string roots = RootsOf(store);
  if (fs::exists(roots)) {
    fs::copy(roots, path + ".root", fs::copy_options::recursive | fs::copy_options::copy_symlinks);
  }
}

Trial RunTrial(const std::vector<std::string>& words) {
  const PrivateFolder folder;
  const std::string copy = folder.At("lab.db");
  InLab([&](Store& store) { CopyLab(store, copy); });
  const std::vector<Entry> before = EntriesOf(copy);
  std::vector<std::string> line{"autocli"};
  line.insert(line.end(), words.begin(), words.end());
  Trial trial;
  trial.status =
      RunWords("/proc/self/exe", line,
               {{"KOREL_LAB", copy}, {"KOREL_LAB_CALLS", folder.At("calls")}, {kTrialMark, "1"}},
               {folder.At("out"), folder.At("err")});
  if (trial.status < 0) Fail("the command could not be run");
  trial.output = LinesOfFile(folder.At("out"));
  trial.errors = LinesOfFile(folder.At("err"));
  for (const std::string& call : LinesOfFile(folder.At("calls"))) {
    trial.calls.push_back(ReadCall(call));
  }
  trial.changes = ChangesBetween(before, EntriesOf(copy));
  return trial;
}

}  // namespace

Trial TryCommand(const std::vector<std::string>& words) {
  try {
    return RunTrial(words);
  } catch (...) {
    ThrowActionable();
  }
}

void RefuseInTrial(const char* what, const char* why) {
  if (Environment(kTrialMark) != nullptr) Fail(Quoted(what), " cannot be tried: ", why);
}

}  // namespace lab
