#include "lab/model/Features.h"

#include "lab/base/Text.h"
#include "lab/store/Query.h"

namespace lab {

std::vector<std::string> FeatureNames() {
  return {"archival-protection", "client-mode", "korel2-config", "metadata-node", "rebuild-trim"};
}

void ResetFeatures(Store& store) {
  for (const std::string& name : FeatureNames()) {
    Execute(store, "INSERT OR REPLACE INTO features VALUES (?, 1)", name);
  }
}

std::vector<FeatureSwitch> AllFeatures(Store& store) {
  std::vector<FeatureSwitch> features;
  for (const Row& row : Query(store, "SELECT name, isEnabled FROM features ORDER BY name")) {
    features.push_back({row.Text(0), row.Flag(1)});
  }
  return features;
}

bool IsFeatureEnabled(Store& store, std::string_view name) {
  return Exists(store, "SELECT 1 FROM features WHERE name = ? AND isEnabled", std::string(name));
}

void SetFeature(Store& store, const std::string& name, bool isEnabled) {
  if (Execute(store, "UPDATE features SET isEnabled = ? WHERE name = ?", isEnabled, name) == 0) {
    Fail("no feature is named ", Quoted(name), DidYouMean(name, FeatureNames()));
  }
}

}  // namespace lab
