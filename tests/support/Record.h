#pragma once

#include "platform/hostctl/KorelUtil.h"
#include "tests/support/RecordingHost.h"

/// How the operations of the recording host keep their calls.
namespace test {

/// The host that is there; null when there is none.
extern RecordingHost* current;

inline std::string Text(const std::string& text) { return text.empty() ? "\"\"" : text; }
inline std::string Text(bool value) { return value ? "true" : "false"; }
template <typename Number>
requires(std::is_integral_v<Number> || std::is_enum_v<Number>) std::string Text(Number value) {
  return std::to_string(static_cast<std::int64_t>(value));
}
inline std::string Text(const Tovrin::Korel::Uuid& uuid) {
  return HskCtl::Korel::KorelUtil::KorelUuidToString(uuid);
}
inline std::string Text(const Tovrin::Korel::KorelDatastore& datastore) {
  return Text(datastore.GetUuid()) + " " + Text(datastore.GetName()) + " " +
         Text(datastore.GetClusterUuid()) + " " + Text(datastore.IsDefault());
}
inline std::string Text(const std::vector<std::string>& texts) {
  std::string joined = "[";
  for (const auto& text : texts) joined += (joined.size() > 1 ? "," : "") + text;
  return joined + "]";
}

/// Keeps the call, and throws what the host is to answer it with.
template <typename... Arguments>
void Record(const std::string& operation, const Arguments&... arguments) {
  std::string line = operation;
  ((line += " " + Text(arguments)), ...);
  current->calls.push_back(line);
  auto failure = current->failures.find(operation);
  if (failure == current->failures.end()) failure = current->failures.find("*");
  if (failure == current->failures.end()) return;
  const std::string message = failure->second;
  if (current->failingOnce.contains(operation)) current->failures.erase(failure);
  throw Tovrin::Lib::Korel::KorelCtlException(message);
}

template <typename Value, typename... Arguments>
Value Answer(const Value& value, const std::string& operation, const Arguments&... arguments) {
  Record(operation, arguments...);
  return value;
}

/// A text that an operation is given.
using Given = const std::string&;

}  // namespace test
