#include "fuzz/Support.h"
#include "lab/hostctl/Program.h"
#include "lab/trial/Trial.h"

// What the lab does in processes of their own is not done at all: these take the place of the lab's
// own functions when the target is linked.
namespace lab {

int RunProgram(const std::string&, const std::string&, bool, bool) {
  fuzz::Require(false, "no program is started");
  return -1;
}

void RunTraceDaemon(const std::string&) {}

Trial TryCommand(const std::vector<std::string>& words) {
  Trial trial;
  trial.status = static_cast<int>(words.size() % 2);
  trial.output = words;
  trial.errors = {"error: " + words.front(), words.back()};
  trial.calls = {{"Operation", words.front(), words.back()}};
  trial.changes = {{"changed", words.front(), words.back(), std::nullopt, "after"}};
  return trial;
}

void RefuseInTrial(const char*, const char*) {}

}  // namespace lab
