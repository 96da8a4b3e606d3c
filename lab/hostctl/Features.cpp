#include "lab/model/Features.h"

#include "lab/hostctl/Call.h"
#include "platform/base/FeatureList.h"
#include "platform/hostctl/KorelUtil.h"

using lab::Arguments;
using lab::Call;
using Tovrin::Korel::KORELFeature;

namespace {

constexpr const char* kClientMode = "client-mode";
constexpr const char* kRebuildTrim = "rebuild-trim";
constexpr const char* kMetadataNode = "metadata-node";
constexpr const char* kKorel2Config = "korel2-config";
constexpr const char* kArchivalProtection = "archival-protection";

const char* NameOf(KORELFeature feature) {
  switch (feature) {
    case KORELFeature::ClientMode:
      return kClientMode;
    case KORELFeature::RebuildTrim:
      return kRebuildTrim;
    case KORELFeature::MetadataNode:
      return kMetadataNode;
    case KORELFeature::Korel2Config:
      return kKorel2Config;
    case KORELFeature::ArchivalProtection:
      return kArchivalProtection;
  }
  return "";
}

}  // namespace

bool FeatureList::IsEnabled(Feature feature) {
  return Call("IsFeatureEnabled", Arguments(feature), lab::IsFeatureEnabled,
              feature == Feature::ClientMode ? kClientMode : "");
}

namespace HskCtl::Korel {

bool KorelUtil::IsKorel2ConfigFssEnabled() {
  return Call("IsKorel2ConfigFssEnabled", Arguments(), lab::IsFeatureEnabled, kKorel2Config);
}

bool KorelUtil::IsKorelDpArchivalProtectionFeatureEnabled() {
  return Call("IsKorelDpArchivalProtectionFeatureEnabled", Arguments(), lab::IsFeatureEnabled,
              kArchivalProtection);
}

bool KorelUtil::IsKorelMetadataNodeFeatureEnabled() {
  return Call("IsKorelMetadataNodeFeatureEnabled", Arguments(), lab::IsFeatureEnabled,
              kMetadataNode);
}

bool KorelUtil::IsKorelRebuildTrimFssEnabled() {
  return Call("IsKorelRebuildTrimFssEnabled", Arguments(), lab::IsFeatureEnabled, kRebuildTrim);
}

bool KorelUtil::IsKorelFeatureEnabled(KORELFeature feature) {
  return Call("IsKorelFeatureEnabled", Arguments(feature), lab::IsFeatureEnabled, NameOf(feature));
}

}  // namespace HskCtl::Korel
