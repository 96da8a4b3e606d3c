#pragma once

#include <nlohmann/json.hpp>
#include <tuple>

#include "lab/hostctl/CallLog.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// The host control library's records as they stand in the call log.
Json Logged(const Tovrin::Korel::Uuid& uuid);
Json Logged(const Tovrin::Korel::KorelDatastore& datastore);
Json Logged(const Tovrin::Korel::KorelHskNicConfig2& config);
Json Logged(const Tovrin::Korel::KorelDiskList& disks);

/// Any other value; an enum as its number.
template <typename Plain>
Json Logged(const Plain& value) {
  return value;
}

/// The arguments of an operation, in call order. They are made into JSON where they are asked for,
/// which has to be before the end of the expression: most calls are not logged, and a list of all
/// disks is long.
template <typename... Values>
class Arguments {
 public:
  explicit Arguments(const Values&... values) : values_(values...) {}

  Json operator()() const {
    Json arguments = Json::array();
    std::apply([&](const Values&... values) { (arguments.push_back(Logged(values)), ...); },
               values_);
    return arguments;
  }

 private:
  std::tuple<const Values&...> values_;
};

}  // namespace lab
