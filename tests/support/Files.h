#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace test {

/// The bytes of the file; empty when there is none.
inline std::string ReadFile(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

inline void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

/// A folder of a test's own, gone with it.
struct Folder {
  Folder() { EXPECT_NE(mkdtemp(path.data()), nullptr) << path; }
  ~Folder() { std::filesystem::remove_all(path); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  /// A path in it.
  std::string operator/(const std::string& name) const { return path + "/" + name; }

  std::string path = testing::TempDir() + "test-XXXXXX";
};

}  // namespace test
