#include "lab/trial/Trial.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "lab/base/Text.h"
#include "lab/memory/Copies.h"
#include "lab/model/Lab.h"
#include "lab/store/LabFile.h"
#include "lab/store/Memory.h"
#include "lab/trial/Program.h"

namespace lab {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTrialMark = "KOREL_LAB_TRIAL";

/// Where temporary files go: TMPDIR, made absolute for the process that is started; /tmp without.
fs::path TemporaryFolder() {
  const char* named = Environment("TMPDIR");
  return fs::absolute(named == nullptr || *named == '\0' ? "/tmp" : named);
}

/// A folder for its owner alone, which goes with the object.
class PrivateFolder {
 public:
  PrivateFolder() : path_(TemporaryFolder() / "autocli-try-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) {
      Fail("cannot make a directory like ", Quoted(path_), ": ", ErrorText(errno));
    }
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

/// The lines of a file; none when there is no such file. Throws when it cannot be read to its end.
std::vector<std::string> LinesOfFile(const std::string& path) {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file && errno != ENOENT) Fail("cannot read ", Quoted(path), ": ", ErrorText(errno));
  // Or a line for which there was no memory would pass for the end.
  file.exceptions(std::ios::badbit);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

/// Reads one line of the call log.
LoggedCall ReadCall(const std::string& line) {
  const auto json = nlohmann::ordered_json::parse(line);
  LoggedCall call{json["operation"], json["arguments"].dump(), std::nullopt};
  if (json.contains("error")) call.error = json["error"];
  return call;
}

/// What has changed in the lab of that file since that entry of its memory.
std::vector<FieldChange> ChangesSince(const std::string& path, std::int64_t entry) {
  Store store(path);
  const Transaction transaction(store, Access::Read);
  std::vector<Changeset> changes;
  for (Entry& each : EntriesAfter(store, entry)) {
    if (each.changes) changes.insert(changes.begin(), std::move(*each.changes));
  }
  return InWords(store, Combined(store, changes));
}

/// The newest entry of the memory of the lab, of which the file is a copy then.
std::int64_t CopyTo(const std::string& path) {
  const File copy = OpenFile(path, O_WRONLY | O_CREAT | O_EXCL);
  if (!copy.IsOpen()) Fail("cannot make ", Quoted(path), ": ", ErrorText(errno));
  return ReadLab([&](Store& store) {
    CopyLab(store, copy.Get());
    return NewestEntry(store);
  });
}

Trial RunTrial(const std::vector<std::string>& words) {
  HeldSignals signals;
  const PrivateFolder folder;
  const std::string copy = folder.At("lab.db");
  const std::int64_t newest = CopyTo(copy);
  std::vector<std::string> line{"autocli"};
  line.insert(line.end(), words.begin(), words.end());
  Trial trial;
  trial.status = RunWords(signals, "/proc/self/exe", line,
                          {{"KOREL_LAB", copy},
                           {"KOREL_LAB_CALLS", folder.At("calls")},
                           {"AUTOCLI_SHELL_RECORD", folder.At("programs")},
                           {"AUTOCLI_SHELL_START", "no"},
                           {kTrialMark, "1"}},
                          {folder.At("out"), folder.At("err")});
  if (trial.status < 0) Fail("the command could not be run");
  trial.output = LinesOfFile(folder.At("out"));
  trial.errors = LinesOfFile(folder.At("err"));
  for (const std::string& call : LinesOfFile(folder.At("calls"))) {
    trial.calls.push_back(ReadCall(call));
  }
  trial.programs = LinesOfFile(folder.At("programs"));
  trial.changes = ChangesSince(copy, newest);
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
