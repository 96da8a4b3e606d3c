#pragma once

#include <string>

namespace OstrelCli::KorelNamespace {

/// Tells the host management daemon that datastores are about to be unmounted ("PreUnmount") or
/// that this has failed ("FailedUnmount"). `datastoreNames` are joined by commas. Nobody depends on
/// the daemon having heard, so nothing is reported.
void NotifyDatastore(const std::string& eventType, const std::string& datastoreNames);

}  // namespace OstrelCli::KorelNamespace
