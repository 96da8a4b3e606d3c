#pragma once

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/Files.h"

namespace test {

/// What a program left behind.
struct Ended {
  int status = -1;  ///< exit status, or 128 and the signal's number
  std::string out;
  std::string err;
};

/// The built programs against a lab of the test's own.
class Lab : public testing::Test {
 protected:
  Lab();

  /// Runs build/bin/autocli with the words of `line` as a shell takes them.
  Ended Run(const std::string& line) const;
  /// Runs with `--formatter json` and answers the document.
  nlohmann::json Ask(const std::string& line) const;
  /// Expects status 0 and nothing on stderr.
  void Do(const std::string& line) const;
  /// Expects status 1 and that message alone.
  void Fails(const std::string& line, const std::string& message) const;

  Folder folder;
  std::map<std::string, std::string> environment;
};

}  // namespace test
