// Belongs to each file that carries the C++ runtime.
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

namespace {

/// By its storage the dynamic linker places what a file has for each thread as it loads the file,
/// where it ends the program if a first exception, because memory ran out, finds no memory for it.
[[gnu::tls_model("initial-exec"), gnu::used, gnu::retain]] thread_local char placed = 0;

[[gnu::used, gnu::retain]] char* Placed() { return &placed; }

void Say(std::string_view text) {
  if (write(STDERR_FILENO, text.data(), text.size()) < 0) _exit(4);
}

}  // namespace

namespace __gnu_cxx {

/// In place of the runtime's own: memory that runs out where nothing may be thrown, as in a
/// destructor of a library, is an end with an error. Everything else is a fault of ours and leaves
/// its traces.
void __verbose_terminate_handler() {
  try {
    if (const auto thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    Say("error: out of memory\n");
    _exit(4);
  } catch (const std::exception& thrown) {
    Say("error: an exception had to end the program: ");
    Say(thrown.what());
    Say("\n");
  } catch (...) {
  }
  std::abort();
}

}  // namespace __gnu_cxx
