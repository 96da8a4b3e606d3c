// Times two programs in turn, so that what the machine does meanwhile falls on both.
//
//   bench_pair RUNS [--restore FROM TO] A... -- B...
//
// Prints the medians of both in milliseconds, and of their ratio A/B pair by pair. Their output
// goes nowhere; an exit status other than 0 ends it. With --restore the file TO is made again of
// FROM before each run.
#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Words = std::vector<char*>;

double Median(std::vector<double> values) {
  std::ranges::nth_element(values, values.begin() + static_cast<long>(values.size() / 2));
  return values[values.size() / 2];
}

/// Milliseconds from the program's start to its end.
double TimeOf(Words words) {
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int file : {STDOUT_FILENO, STDERR_FILENO}) {
    posix_spawn_file_actions_addopen(&actions, file, "/dev/null", O_WRONLY, 0);
  }
  pid_t child = -1;
  int status = -1;
  const auto start = std::chrono::steady_clock::now();
  if (posix_spawnp(&child, words[0], &actions, nullptr, words.data(), environ) == 0) {
    waitpid(child, &status, 0);
  }
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  posix_spawn_file_actions_destroy(&actions);
  if (status != 0) throw std::runtime_error(std::string(words[0]) + " failed");
  return taken.count();
}

/// One processor for all runs: moving between two costs more than what is measured.
void StayOnOneProcessor() {
  cpu_set_t processor;
  CPU_ZERO(&processor);
  CPU_SET(static_cast<std::size_t>(sched_getcpu()), &processor);
  sched_setaffinity(0, sizeof(processor), &processor);
}

void Run(Words words) {
  const int runs = std::atoi(words.at(0));
  words.erase(words.begin());
  std::string from;
  std::string to;
  if (std::string(words.at(0)) == "--restore") {
    from = words.at(1);
    to = words.at(2);
    words.erase(words.begin(), words.begin() + 3);
  }
  const auto middle = std::ranges::find(words, std::string("--"));
  const Words first(words.begin(), middle);
  const Words second(middle + 1, words.end());

  const auto time = [&](const Words& program) {
    if (!from.empty()) {
      std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
    }
    return TimeOf(program);
  };
  std::vector<double> a;
  std::vector<double> b;
  std::vector<double> ratios;
  time(first);
  time(second);
  for (int i = 0; i < runs; ++i) {
    a.push_back(time(first));
    b.push_back(time(second));
    ratios.push_back(a.back() / b.back());
  }
  std::cout << Median(a) << " " << Median(b) << " " << Median(ratios) << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  try {
    StayOnOneProcessor();
    Run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << "bench_pair: " << failure.what() << "\n";
    return 1;
  }
}
