#pragma once

#include <exception>
#include <new>
#include <optional>
#include <string>

namespace autocli {

inline constexpr const char* kOutOfMemory = "out of memory";

/// Runs code that belongs to a plug-in. Returns what the exception says that left it, never an
/// empty text; nothing when none did. This is the one place where the framework meets exceptions.
template <typename Action>
std::optional<std::string> Guarded(Action&& action) {
  try {
    action();
    return std::nullopt;
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::exception& exception) {
    if (*exception.what() != '\0') return exception.what();
  } catch (...) {
  }
  return "an exception that does not say what it is";
}

}  // namespace autocli
