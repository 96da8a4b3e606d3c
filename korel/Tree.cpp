#include "korel/Tree.h"

#include "korel/cluster/Commands.h"
#include "korel/datastore/Commands.h"
#include "korel/faultdomain/Commands.h"
#include "korel/maintenancemode/Commands.h"
#include "korel/network/Commands.h"
#include "korel/policy/Commands.h"
#include "korel/resync/Commands.h"
#include "korel/storage/Commands.h"
#include "korel/storagepool/Commands.h"
#include "korel/trace/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

Node Policy() {
  return {"policy",
          "Commands for Korel storage policy configuration",
          {Verb<PolicyGetDefault>("getdefault"), Verb<PolicySetDefault>("setdefault"),
           Verb<PolicyClearDefault>("cleardefault")}};
}

Node Datastore() {
  return {"datastore",
          "Commands for Korel datastore configuration",
          {{"name",
            "Commands for configuring Korel datastore name.",
            {Verb<DatastoreNameGet>("get"), Verb<DatastoreNameSet>("set")}},
           Verb<DatastoreAdd>("add"),
           Verb<DatastoreRemove>("remove"),
           Verb<DatastoreList>("list"),
           Verb<DatastoreClear>("clear")}};
}

Node Storage() {
  return {"storage",
          "Commands for Korel physical storage configuration",
          {Verb<StorageAdd>("add"),
           Verb<StorageRemove>("remove"),
           Verb<StorageList>("list"),
           {"automode",
            "Commands for configuring Korel storage auto claim mode.",
            {Verb<StorageAutoModeGet>("get"), Verb<StorageAutoModeSet>("set")}},
           {"diskgroup",
            "Commands for configuring Korel diskgroups",
            {Verb<StorageDiskgroupMount>("mount"), Verb<StorageDiskgroupUmount>("unmount"),
             Verb<StorageDiskgroupRebuild>("rebuild")}},
           {"tag",
            "Commands to add/remove tags for Korel storage",
            {Verb<StorageTagAdd>("add"), Verb<StorageTagRemove>("remove")}}}};
}

Node StoragePool() {
  return {"storagepool",
          "Commands for Korel storage pool physical configuration.",
          {Verb<StoragePoolAdd>("add"), Verb<StoragePoolRemove>("remove"),
           Verb<StoragePoolList>("list")}};
}

/// "ipv4" is a second namespace with command objects of its own, not a link to "ip".
Node NetworkIp(const char* name, const char* description) {
  return {name,
          description,
          {Verb<NetworkIpAdd>("add"), Verb<NetworkIpRemove>("remove"), Verb<NetworkIpSet>("set")}};
}

Node Network() {
  return {"network",
          "Commands for Korel host network configuration",
          {Verb<NetworkRemove>("remove"),
           Verb<NetworkRestore>("restore"),
           Verb<NetworkClear>("clear"),
           Verb<NetworkList>("list"),
           NetworkIp("ip", "Commands for configuring IP network for Korel."),
           NetworkIp("ipv4", "Compatibility alias for \"ip\""),
           {"security",
            "Commands for configuring Korel network security settings",
            {Verb<NetworkSecuritySet>("set"), Verb<NetworkSecurityGet>("get"),
             Verb<NetworkSecurityList>("list")}}}};
}

Node Cluster() {
  return {
      "cluster",
      "Commands for Korel host cluster configuration",
      {Verb<ClusterJoin>("join"),
       Verb<ClusterLeave>("leave"),
       Verb<ClusterGet>("get"),
       {"restore",
        "",
        {},
        []() -> std::shared_ptr<Corvex::AutoCli::NamespaceNode> {
          return ClusterRestore::New(false);
        }},
       Verb<ClusterNew>("new"),
       {"korelmax", "Commands for Korel Max configuration.", {Verb<KorelMaxSet>("set")}},
       Verb<ClusterList>("list"),
       {"unicastagent",
        "Commands for configuring unicast agents for Korel.",
        {Verb<ClusterUnicastAgentAdd>("add"), Verb<ClusterUnicastAgentRemove>("remove"),
         Verb<ClusterUnicastAgentList>("list"), Verb<ClusterUnicastAgentClear>("clear")}},
       {"preferredfaultdomain",
        "Commands for configuring a preferred fault domain for Korel.",
        {Verb<ClusterPreferredFaultDomainGet>("get"), Verb<ClusterPreferredFaultDomainSet>("set"),
         Verb<ClusterPreferredFaultDomainList>("list")}}}};
}

Node Trace() {
  return {"trace",
          "Commands for Korel trace configuration",
          {Verb<KorelTraceSet>("set"), Verb<KorelTraceGet>("get")}};
}

Node MaintenanceMode() {
  return {"maintenancemode",
          "Commands for Korel maintenance mode operation",
          {Verb<MaintenanceModeCancel>("cancel")}};
}

Node FaultDomain() {
  return {
      "faultdomain",
      "Commands for Korel fault domain configuration",
      {Verb<FaultDomainSet>("set"), Verb<FaultDomainGet>("get"), Verb<FaultDomainReset>("reset")}};
}

Node Resync() {
  return {
      "resync",
      "Commands for Korel resync configuration",
      {{"throttle",
        "Commands for Korel resync throttling",
        {Verb<ResyncThrottleSet>("set"), Verb<ResyncThrottleGet>("get")}},
       {"bandwidth", "Commands for Korel resync bandwidth", {Verb<ResyncBandwidthGet>("get")}}}};
}

}  // namespace

Node Tree() {
  return {"korel",
          "Ostrel Korel commands",
          {Policy(), Datastore(), Storage(), StoragePool(), Network(), Cluster(), Trace(),
           MaintenanceMode(), FaultDomain(), Resync()}};
}

}  // namespace OstrelCli::KorelNamespace
