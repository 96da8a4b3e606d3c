#include "tests/e2e/Program.h"

#include <sys/wait.h>

namespace test {

Lab::Lab() {
  environment = {{"KOREL_LAB", folder / "lab.db"}, {"HOME", folder.path}};
  if (const char* options = std::getenv("ASAN_OPTIONS")) environment["ASAN_OPTIONS"] = options;
}

Ended Lab::Run(const std::string& line) const {
  // Files rather than pipes: no output is too long for them.
  const std::string out = folder / "out";
  const std::string err = folder / "err";
  std::string command = "exec env -i";
  for (const auto& [name, value] : environment) command += " '" + name + "=" + value + "'";
  command += " " KOREL_BUILD_DIR "/bin/autocli " + line + " </dev/null >" + out + " 2>" + err;
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadFile(out),
          ReadFile(err)};
}

nlohmann::json Lab::Ask(const std::string& line) const {
  const Ended ended = Run(line + " --formatter json");
  EXPECT_EQ(ended.err, "");
  return nlohmann::json::parse(ended.out);
}

void Lab::Do(const std::string& line) const {
  const Ended ended = Run(line);
  EXPECT_EQ(ended.status, 0) << line;
  EXPECT_EQ(ended.err, "") << line;
}

void Lab::Fails(const std::string& line, const std::string& message) const {
  const Ended ended = Run(line);
  EXPECT_EQ(ended.status, 1) << line;
  EXPECT_EQ(ended.err, "error: " + message + "\n") << line;
}

}  // namespace test
