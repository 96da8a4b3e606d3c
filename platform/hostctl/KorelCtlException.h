#pragma once

#include <exception>
#include <string>
#include <utility>

namespace Tovrin::Lib::Korel {

/// The one exception of the host control library: a message that a person can act on.
class KorelCtlException : public std::exception {
 public:
  explicit KorelCtlException(std::string message) : message_(std::move(message)) {}

  const std::string& GetMessage() const { return message_; }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string message_;
};

}  // namespace Tovrin::Lib::Korel
