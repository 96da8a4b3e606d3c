#include "tests/e2e/Program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace test {
namespace {

const std::string kAutocli = KOREL_BUILD_DIR "/bin/autocli";

std::string Content(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

Lab::Lab() {
  char made[] = "/tmp/korel-e2e-XXXXXX";
  folder = mkdtemp(made);
  environment["KOREL_LAB"] = folder + "/lab.db";
  environment["HOME"] = folder;
  if (const char* options = std::getenv("ASAN_OPTIONS")) environment["ASAN_OPTIONS"] = options;
}

Lab::~Lab() { std::filesystem::remove_all(folder); }

Ended Lab::RunWords(const std::vector<std::string>& words) const {
  std::vector<std::string> line = {kAutocli};
  line.insert(line.end(), words.begin(), words.end());
  std::vector<std::string> settings;
  for (const auto& [name, value] : environment) settings.push_back(name + "=" + value);

  // Files rather than pipes: no output is too long for them. A number keeps runs at once apart.
  static int number = 0;
  const std::string base = folder + "/run" + std::to_string(++number);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, (base + ".out").c_str(), O_WRONLY | O_CREAT, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, (base + ".err").c_str(), O_WRONLY | O_CREAT, 0600);
  pid_t child = 0;
  const int failed = posix_spawn(&child, kAutocli.c_str(), &actions, nullptr, Pointers(line).data(),
                                 Pointers(settings).data());
  posix_spawn_file_actions_destroy(&actions);
  Ended ended;
  int status = 0;
  if (failed == 0 && waitpid(child, &status, 0) == child) {
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  ended.out = Content(base + ".out");
  ended.err = Content(base + ".err");
  return ended;
}

Ended Lab::Run(const std::string& line) const {
  std::istringstream stream(line);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return RunWords(words);
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
