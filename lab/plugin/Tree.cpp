#include "lab/plugin/Tree.h"

#include "lab/plugin/Deferred.h"

namespace lab {
namespace {

using Corvex::Declare::Node;
using NodePtr = std::shared_ptr<Corvex::AutoCli::NamespaceNode>;

Node Verb(const char* name, const char* description) {
  return {name, description, {}, []() -> NodePtr { return std::make_shared<Deferred>(); }};
}

}  // namespace

Node Tree() {
  return {
      "lab",
      "Prepare, break and look into the lab: a Korel host without the hardware",
      {Verb("init", "Make the lab, with one standard host \"host1\" or the hosts of an inventory."),
       Verb("show", "Show the lab: its file, the host that commands act on, and what it holds."),
       Verb(
           "picture",
           "Draw the lab as a graph in the DOT language: \"autocli lab picture | dot -Tsvg\" makes an image of it."),
       Verb(
           "try",
           "Run a command on a copy of the lab: show its output, the host control operations that it calls, and what it would change. The lab stays as it is."),
       Verb(
           "history",
           "Show what changed the lab, the newest first, or row by row what one entry changed. The memory keeps the newest 1,000 entries or 8 MiB of them."),
       Verb(
           "undo",
           "Take back what the last command on the lab changed, whichever host it was for, or all that came after an entry of the history. Doing it twice changes nothing."),
       Verb("save",
            "Write the whole lab, its history included, to another file, which is a lab too."),
       Verb(
           "load",
           "Make the lab what a saved one is. Its own history stays, and 'lab undo' takes this back."),
       Verb("diff", "Show what has to change in another lab to make it this one, row by row."),
       Verb(
           "check",
           "Examine the lab: the structure of its file, what its rows refer to, and the rules that a host keeps. Each problem is an error."),
       {"host",
        "Hosts of the lab",
        {Verb(
             "add",
             "Add a host with the standard devices and interfaces. KOREL_LAB_HOST picks the host that commands act on."),
         Verb("remove", "Take a host that is in no cluster out of the lab, with all that it has."),
         Verb("list", "List the hosts of the lab."),
         Verb("set", "Change the fault domain of a host, or what it is to the clusters it is in."),
         Verb(
             "reboot",
             "Reboot a host: it takes part in no cluster and has no network configuration until \"korel cluster restore\" and \"korel network restore\" bring back what is persisted.")}},
       {"cluster",
        "Clusters of the lab",
        {Verb("list", "List the clusters of the lab."),
         Verb("show", "Show a cluster of the lab as all its members share it.")}},
       {"maintenance",
        "Maintenance mode operation of the host",
        {Verb(
            "start",
            "Begin a maintenance mode operation of the host, which goes on until \"korel maintenancemode cancel\" or a reboot ends it.")}},
       {"resync",
        "Resync workload of the host",
        {Verb(
            "set",
            "Set the resync workload of the host's busiest disk group. \"korel resync bandwidth get\" shows it, or the throttle when that is less.")}},
       {"interface",
        "Network interfaces of the host",
        {Verb("add", "Put a network interface into the host, after those that it has."),
         Verb("remove",
              "Take a network interface out of the host, one that nothing is configured for."),
         Verb("list",
              "List the network interfaces of the host, and which Korel traffic each carries.")}},
       {"disk",
        "Devices of the host",
        {Verb(
             "add",
             "Put a device into the host. It has a UUID of its own, also under the name of one that was taken out."),
         Verb("remove", "Take a device that is not in use out of the host."),
         Verb("list", "List the devices of the host, in use or not, and what they are fit for."),
         Verb(
             "set",
             "Make a device of the host what commands are to find: unhealthy, holding data or partitions, of an older on-disk format, encrypted, without its key, with a wrong checksum.")}},
       {"daemon",
        "Trace daemon of the host",
        {Verb("stop", "Stop the trace daemon of the host, as if Korel were not enabled on it."),
         Verb("start", "Start the trace daemon of the host; one that runs is left alone."),
         Verb(
             "set",
             "Choose what the init script of the trace daemon answers, to see what commands make of it. What is not given is answered as it is: 0 done, 3 the daemon does not run.")}},
       {"file",
        "Files of the host, which are kept in the lab",
        {Verb(
             "list",
             "List the files of the host. They are kept in the lab and are not files of the machine."),
         Verb("get",
              "Show the lines of a file of the host, or write its bytes to a file of the machine."),
         Verb(
             "put",
             "Give the host a file, or another one in its place. It is kept in the lab, at most 64 KiB."),
         Verb("remove", "Take a file from the host.")}},
       {"fault",
        "Host control operations that fail on purpose",
        {Verb(
             "add",
             "Make a host control operation fail with a message of your choice, before it does anything, or make it slow. GetKorelInfo then yields no object. Replaces an earlier fault of the operation and host."),
         Verb(
             "list",
             "List the faults: which operations fail or are slow, on which host, and how often. Without \"Host\" calls of all hosts are struck, without \"Calls Left\" all calls."),
         Verb("operations",
              "List the host control operations that can be made to fail, with what they do."),
         Verb("remove", "Let a host control operation work again, on all hosts or on one."),
         Verb("clear", "Let all host control operations work again.")}},
       {"feature",
        "Feature switches of the host",
        {Verb("list", "List the feature switches."), Verb("set", "Switch a feature on or off.")}}}};
}

}  // namespace lab
