#include "lab/commands/Tree.h"

#include "lab/commands/Commands.h"

namespace lab {
namespace {

using Corvex::Declare::Node;

Node Verb(const char* name, CommandPtr (*make)()) { return {name, "", {}, make}; }

}  // namespace

Node Tree() {
  return {
      "lab",
      "Prepare, break and look into the lab: a Korel host without the hardware",
      {Verb("init", NewInit),
       Verb("show", NewShow),
       Verb("try", NewTry),
       Verb("history", NewHistory),
       Verb("undo", NewUndo),
       Verb("save", NewSave),
       Verb("load", NewLoad),
       Verb("diff", NewDiff),
       Verb("check", NewCheck),
       {"host",
        "Hosts of the lab",
        {Verb("add", NewHostAdd), Verb("list", NewHostList), Verb("set", NewHostSet),
         Verb("reboot", NewHostReboot)}},
       {"cluster",
        "Clusters of the lab",
        {Verb("list", NewClusterList), Verb("show", NewClusterShow)}},
       {"maintenance",
        "Maintenance mode operation of the host",
        {Verb("start", NewMaintenanceStart)}},
       {"resync", "Resync workload of the host", {Verb("set", NewResyncSet)}},
       {"disk", "Devices of the host", {Verb("list", NewDiskList), Verb("set", NewDiskSet)}},
       {"daemon",
        "Trace daemon of the host",
        {Verb("stop", NewDaemonStop), Verb("start", NewDaemonStart), Verb("set", NewDaemonSet)}},
       {"file",
        "Files of the host, which are kept in the lab",
        {Verb("list", NewFileList), Verb("get", NewFileGet), Verb("put", NewFilePut),
         Verb("remove", NewFileRemove)}},
       {"fault",
        "Host control operations that fail on purpose",
        {Verb("add", NewFaultAdd), Verb("list", NewFaultList), Verb("clear", NewFaultClear)}},
       {"feature",
        "Feature switches of the host",
        {Verb("list", NewFeatureList), Verb("set", NewFeatureSet)}}}};
}

}  // namespace lab
