#pragma once

#include <memory>
#include <string>

#include "korel/frame/Frame.h"

namespace OstrelCli::KorelNamespace {

/// A cluster as its member sees it, under that type name.
std::shared_ptr<MetaStruct> ClusterInformation(const char* typeName);

/// Sets the fields that hold for the host whether it is in a cluster or not; `count` is in how many
/// it is. What the host control library cannot tell stays unset.
void FillHost(MetaStruct& information, const HostControl& host, std::size_t count);

/// Sets the fields of one cluster of the host, a client cluster too.
void FillCluster(MetaStruct& information, const HostControl& host, const std::string& clusterUuid);

}  // namespace OstrelCli::KorelNamespace
