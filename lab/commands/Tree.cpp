#include "lab/commands/Tree.h"

#include "lab/commands/Commands.h"

namespace lab {

Node Tree() {
  return {
      "lab",
      "Prepare, break and look into the lab: a Korel host without the hardware",
      {Verb<LabInit>("init"),
       Verb<LabShow>("show"),
       Verb<LabTry>("try"),
       Verb<LabHistory>("history"),
       Verb<LabUndo>("undo"),
       Verb<LabSave>("save"),
       Verb<LabLoad>("load"),
       Verb<LabDiff>("diff"),
       Verb<LabCheck>("check"),
       {"host",
        "Hosts of the lab",
        {Verb<LabHostAdd>("add"), Verb<LabHostList>("list"), Verb<LabHostSet>("set"),
         Verb<LabHostReboot>("reboot")}},
       {"cluster",
        "Clusters of the lab",
        {Verb<LabClusterList>("list"), Verb<LabClusterShow>("show")}},
       {"maintenance",
        "Maintenance mode operation of the host",
        {Verb<LabMaintenanceStart>("start")}},
       {"resync", "Resync workload of the host", {Verb<LabResyncSet>("set")}},
       {"disk", "Devices of the host", {Verb<LabDiskList>("list"), Verb<LabDiskSet>("set")}},
       {"daemon",
        "Trace daemon of the host",
        {Verb<LabDaemonStop>("stop"), Verb<LabDaemonStart>("start"), Verb<LabDaemonSet>("set")}},
       {"file",
        "Files of the host, which are kept in the lab",
        {Verb<LabFileList>("list"), Verb<LabFileGet>("get"), Verb<LabFilePut>("put"),
         Verb<LabFileRemove>("remove")}},
       {"fault",
        "Host control operations that fail on purpose",
        {Verb<LabFaultAdd>("add"), Verb<LabFaultList>("list"), Verb<LabFaultClear>("clear")}},
       {"feature",
        "Feature switches of the host",
        {Verb<LabFeatureList>("list"), Verb<LabFeatureSet>("set")}}}};
}

}  // namespace lab
