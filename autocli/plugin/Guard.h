#pragma once

#include <exception>
#include <optional>
#include <string>

namespace autocli {

/// Runs code that belongs to a plug-in. Returns what the exception says that left it; nothing when
/// none did. This is the one place where the framework meets exceptions.
template <typename Action>
std::optional<std::string> Guarded(Action&& action) {
  try {
    action();
    return std::nullopt;
  } catch (const std::exception& exception) {
    return exception.what();
  } catch (...) {
    return "an exception that does not say what it is";
  }
}

}  // namespace autocli
