#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

struct FeatureSwitch {
  std::string name;
  bool isEnabled = false;
};

/// The names of all feature switches.
std::vector<std::string> FeatureNames();
/// Switches all features on, as in a fresh lab.
void ResetFeatures(Store& store);
/// By name.
std::vector<FeatureSwitch> AllFeatures(Store& store);
bool IsFeatureEnabled(Store& store, std::string_view name);
/// Throws KorelCtlException when there is no feature of that name.
void SetFeature(Store& store, const std::string& name, bool isEnabled);

}  // namespace lab
