#include "fuzz/Support.h"
#include "lab/base/Text.h"
#include "lab/memory/Copies.h"
#include "lab/trial/Trial.h"

// What the lab does in processes of their own, and with files that the line names, is not done at
// all: these take the place of the lab's own functions when the target is linked.
namespace lab {
namespace {

/// Half of the files cannot be used.
void Use(const std::string& path) {
  if (path.size() % 2 == 1) Fail("cannot use ", Quoted(path));
}

std::vector<FieldChange> ChangesOf(const std::string& text) {
  return {{"changed", text, text, std::nullopt, "after"}, {"added", text, {}, {}, {}}};
}

}  // namespace

Trial TryCommand(const std::vector<std::string>& words) {
  Trial trial;
  trial.status = static_cast<int>(words.size() % 2);
  trial.output = words;
  trial.errors = {"error: " + words.front(), words.back()};
  trial.calls = {{"Operation", words.front(), words.back()}};
  trial.changes = ChangesOf(words.back());
  return trial;
}

void RefuseInTrial(const char*, const char*) {}

void WriteFile(const std::string& path, const std::string&, bool) { Use(path); }

std::string ReadSmallFile(const std::string& path) {
  Use(path);
  return path;
}

void SaveLab(const std::string& path, bool) { Use(path); }

void LoadLab(const std::string& path) { Use(path); }

std::vector<FieldChange> DifferenceFrom(const std::string& path) {
  Use(path);
  return ChangesOf(path);
}

}  // namespace lab
