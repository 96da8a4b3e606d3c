#pragma once

#include <string>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// A host's default policy values. A value is one or more of these, joined by commas, each at most
/// once:
///   copies=1..4  stripes=1..12  reserved-percent=0..100  checksum=on|off

/// Throws KorelCtlException naming the first pair that is not possible.
void CheckPolicy(const std::string& policy);

/// The value that was set, else the built-in one. Throws KorelCtlException when there is no such
/// class; so do the others.
std::string DefaultPolicy(Store& store, const Host& host,
                          Tovrin::Korel::KorelPolicyClass policyClass);
/// Throws KorelCtlException naming the first pair that is not possible.
void SetDefaultPolicy(Store& store, const Host& host, Tovrin::Korel::KorelPolicyClass policyClass,
                      const std::string& value);
/// Back to the built-in values.
void ClearDefaultPolicies(Store& store, const Host& host);

}  // namespace lab
