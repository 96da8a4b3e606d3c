#pragma once

#include <memory>
#include <string>

#include "korel/frame/Frame.h"

/// What commands of "korel network security" share.
namespace OstrelCli::KorelNamespace {

/// The encryption settings of a cluster, under that type name.
std::shared_ptr<MetaStruct> SecurityRecord(const char* typeName);

/// Asks the host for the settings of that cluster.
void FillSecurityRecord(MetaStruct& record, const HostControl& host,
                        const std::string& clusterUuid);

/// Whether the host is in that cluster; the text must be the host's own.
bool IsJoined(const HostControl& host, const std::string& clusterUuid);

/// The refusal of a cluster that the host is not in.
std::string UnknownCluster(const std::string& clusterUuid);

}  // namespace OstrelCli::KorelNamespace
