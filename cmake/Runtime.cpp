// Belongs to each file that carries the C++ runtime.
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <new>
#include <string_view>

namespace {

/// Because of this one the dynamic linker provides for all that the file keeps for each thread when
/// it loads the file. It would wait for the first exception otherwise, and end the program when
/// there is no memory left by then.
[[gnu::tls_model("initial-exec"), gnu::used, gnu::retain]] thread_local char placed = 0;

[[gnu::used, gnu::retain]] char* Placed() { return &placed; }

void Say(std::string_view text) {
  if (write(STDERR_FILENO, text.data(), text.size()) < 0) _exit(4);
}

[[noreturn]] void End(std::string_view reason) {
  Say("error: ");
  // What others have said does not reach a terminal raw.
  for (const char& c : reason) Say({c >= ' ' && c < 0x7f ? &c : "?", 1});
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
