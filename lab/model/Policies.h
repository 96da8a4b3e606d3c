#pragma once

#include <string>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// A host's default policy values. A value is one or more pairs of key and value, joined by commas,
/// each key at most once; lab/conversions/PolicyKeys.h has the keys.

/// Throws KorelCtlException naming the first pair that is not possible.
void CheckPolicy(const std::string& policy);

/// The value in force, with all keys: where the one that was set says nothing, the built-in one
/// holds. Throws KorelCtlException when there is no such
/// class; so do the others.
std::string DefaultPolicy(Store& store, const Host& host,
                          Tovrin::Korel::KorelPolicyClass policyClass);
/// Throws KorelCtlException naming the first pair that is not possible.
void SetDefaultPolicy(Store& store, const Host& host, Tovrin::Korel::KorelPolicyClass policyClass,
                      const std::string& value);
/// Back to the built-in value.
void ClearDefaultPolicy(Store& store, const Host& host,
                        Tovrin::Korel::KorelPolicyClass policyClass);
/// The same of all classes.
void ClearDefaultPolicies(Store& store, const Host& host);

}  // namespace lab
