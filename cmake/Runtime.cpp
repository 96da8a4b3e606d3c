// Belongs to each file that carries the C++ runtime.
#include <unistd.h>

#include <cerrno>
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

[[noreturn]] void End(std::string_view reason) {
  Say("error: ");
  Say(reason);
  Say("\n");
  _exit(4);
}

}  // namespace

namespace __gnu_cxx {

/// In place of the runtime's own: an exception where none may leave, as in a destructor, ends the
/// program with an error and not by a signal. Memory that runs out comes here through libraries.
void __verbose_terminate_handler() {
  constexpr std::string_view kOutOfMemory = "out of memory";
  // Of an exception that is on its way nobody knows the kind.
  const bool isOutOfMemory = errno == ENOMEM;
  try {
    if (const auto thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    End(kOutOfMemory);
  } catch (const std::exception& thrown) {
    End(thrown.what());
  } catch (...) {
  }
  End(isOutOfMemory ? kOutOfMemory : "an exception came where none can be handled");
}

}  // namespace __gnu_cxx
