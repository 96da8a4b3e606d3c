#pragma once

#include <memory>
#include <string>

#include "korel/frame/Frame.h"

namespace OstrelCli::KorelNamespace {

/// A cluster as its member sees it, under that type name.
std::shared_ptr<MetaStruct> ClusterInformation(const char* typeName);

/// Sets the fields that hold for the host whether it is in a cluster or not.
void FillHost(MetaStruct& information, bool enabled);

/// Sets the fields of one cluster of the host.
void FillCluster(MetaStruct& information, const HostControl& host, const std::string& clusterUuid);

}  // namespace OstrelCli::KorelNamespace
