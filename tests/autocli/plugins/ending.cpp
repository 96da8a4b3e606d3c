#include <dlfcn.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

// NOLINTNEXTLINE(misc-no-recursion)
int UseStackUp(int depth) {
  volatile char more[10000] = {};
  return depth == 0 ? 0 : UseStackUp(depth - 1) + more[depth];
}

[[maybe_unused]] const bool kLoaded = [] {
  // Ends the program as the letter asks that its file's name begins with.
  Dl_info self;
  dladdr(&kLoaded, &self);
  const char letter = std::strrchr(self.dli_fname, '/')[1];
  if (letter == 'e') std::exit(0);
  if (letter == 't') throw std::runtime_error("no /dev/disk today");
  if (letter == 's') return UseStackUp(9999) == 0;
  return std::raise(SIGFPE) == 0;
}();

}  // namespace
