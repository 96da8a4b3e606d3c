#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/Files.h"

namespace test {

/// What a program printed, and its exit status.
struct Ended {
  int status = -1;  ///< exit status, or 128 and the signal's number
  std::string out;
  std::string err;
};

/// The built programs against a lab of the test's own.
class Lab : public testing::Test {
 protected:
  Lab() {
    environment = {{"KOREL_LAB", folder / "lab.db"},
                   {"HOME", folder.path},
                   {"AUTOCLI_COMPLETE_MS", "60000"}};  // a busy machine is no fault
    if (const char* options = std::getenv("ASAN_OPTIONS")) environment["ASAN_OPTIONS"] = options;
  }

  /// Runs build/bin/autocli in the folder with the words of `line` as a shell takes them.
  Ended Run(const std::string& line) const {
    // Files rather than pipes: no output is too long for them.
    std::string command = "cd " + folder.path + " && exec env -i";
    for (const auto& [name, value] : environment) command += " '" + name + "=" + value + "'";
    command += " " KOREL_BUILD_DIR "/bin/autocli " + line + " </dev/null";
    command += " >" + (folder / "out") + " 2>" + (folder / "err");
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            ReadFile(folder / "out"), ReadFile(folder / "err")};
  }
  /// Runs with `--formatter json` and answers the document.
  nlohmann::json Ask(const std::string& line) const {
    const Ended ended = Run(line + " --formatter json");
    EXPECT_EQ(ended.err, "");
    return nlohmann::json::parse(ended.out);
  }
  /// Expects status 0 and nothing on stderr.
  void Do(const std::string& line) const {
    const Ended ended = Run(line);
    EXPECT_EQ(ended.status, 0) << line;
    EXPECT_EQ(ended.err, "") << line;
  }
  /// Expects status 1 and that message alone.
  void Fails(const std::string& line, const std::string& message) const {
    const Ended ended = Run(line);
    EXPECT_EQ(ended.status, 1) << line;
    EXPECT_EQ(ended.err, "error: " + message + "\n") << line;
  }

  Folder folder;
  std::map<std::string, std::string> environment;
};

}  // namespace test
