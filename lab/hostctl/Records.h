#pragma once

#include <nlohmann/json.hpp>

#include "lab/hostctl/CallLog.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// The host control library's records as they stand in the call log.
Json Logged(const Tovrin::Korel::Uuid& uuid);
Json Logged(const Tovrin::Korel::KorelDatastore& datastore);
Json Logged(const Tovrin::Korel::KorelHskNicConfig2& config);
Json Logged(const Tovrin::Korel::KorelDiskList& disks);

/// The arguments of an operation, in call order.
template <typename... Values>
Json Arguments(const Values&... values) {
  Json arguments = Json::array();
  (arguments.push_back(Json(values)), ...);
  return arguments;
}

/// An enum as its number.
template <typename Enum>
int Number(Enum value) {
  return static_cast<int>(value);
}

}  // namespace lab
