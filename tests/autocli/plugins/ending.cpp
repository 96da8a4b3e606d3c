#include <dlfcn.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "platform/autocli/AutoCli.h"

namespace {

// NOLINTNEXTLINE(misc-no-recursion)
int UseStackUp(int depth) {
  volatile char more[10000] = {};
  return depth == 0 ? 0 : UseStackUp(depth - 1) + more[depth];
}

/// The letter that its file's name begins with asks how the program is ended.
char Letter() {
  static const char none = 0;
  Dl_info self;
  dladdr(&none, &self);
  return std::strrchr(self.dli_fname, '/')[1];
}

struct Ending {
  ~Ending() {
    if (Letter() == 'd') std::abort();
  }
} const kEnding;

[[maybe_unused]] const bool kLoaded = [] {
  const char letter = Letter();
  if (letter == 'd' || letter == 'r') return true;
  if (letter == 'e') std::exit(0);
  if (letter == 'q') std::quick_exit(0);
  if (letter == 't') throw std::runtime_error("no /dev/disk today");
  if (letter == 's') return UseStackUp(9999) == 0;
  return std::raise(SIGFPE) == 0;
}();

}  // namespace

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>&) {
  if (Letter() == 'r') std::abort();
}
