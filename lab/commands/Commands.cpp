#include "lab/commands/Commands.h"

#include <stdexcept>

namespace lab {

// Each is made by the file of its name.
CommandPtr NewInit();
CommandPtr NewShow();
CommandPtr NewPicture();
CommandPtr NewTry();
CommandPtr NewHistory();
CommandPtr NewUndo();
CommandPtr NewSave();
CommandPtr NewLoad();
CommandPtr NewDiff();
CommandPtr NewCheck();
CommandPtr NewHostAdd();
CommandPtr NewHostRemove();
CommandPtr NewHostList();
CommandPtr NewHostSet();
CommandPtr NewHostReboot();
CommandPtr NewClusterList();
CommandPtr NewClusterShow();
CommandPtr NewMaintenanceStart();
CommandPtr NewResyncSet();
CommandPtr NewInterfaceAdd();
CommandPtr NewInterfaceRemove();
CommandPtr NewDiskAdd();
CommandPtr NewDiskRemove();
CommandPtr NewDiskList();
CommandPtr NewDiskSet();
CommandPtr NewInterfaceList();
CommandPtr NewDaemonStop();
CommandPtr NewDaemonStart();
CommandPtr NewDaemonSet();
CommandPtr NewFileList();
CommandPtr NewFileGet();
CommandPtr NewFilePut();
CommandPtr NewFileRemove();
CommandPtr NewFaultAdd();
CommandPtr NewFaultList();
CommandPtr NewFaultClear();
CommandPtr NewFaultOperations();
CommandPtr NewFaultRemove();
CommandPtr NewFeatureList();
CommandPtr NewFeatureSet();

namespace {

struct Entry {
  std::string_view path;
  CommandPtr (*make)();
};
constexpr Entry kEntries[] = {
    {"init", NewInit},
    {"show", NewShow},
    {"picture", NewPicture},
    {"try", NewTry},
    {"history", NewHistory},
    {"undo", NewUndo},
    {"save", NewSave},
    {"load", NewLoad},
    {"diff", NewDiff},
    {"check", NewCheck},
    {"host add", NewHostAdd},
    {"host remove", NewHostRemove},
    {"host list", NewHostList},
    {"host set", NewHostSet},
    {"host reboot", NewHostReboot},
    {"cluster list", NewClusterList},
    {"cluster show", NewClusterShow},
    {"maintenance start", NewMaintenanceStart},
    {"resync set", NewResyncSet},
    {"interface add", NewInterfaceAdd},
    {"interface remove", NewInterfaceRemove},
    {"disk add", NewDiskAdd},
    {"disk remove", NewDiskRemove},
    {"disk list", NewDiskList},
    {"disk set", NewDiskSet},
    {"interface list", NewInterfaceList},
    {"daemon stop", NewDaemonStop},
    {"daemon start", NewDaemonStart},
    {"daemon set", NewDaemonSet},
    {"file list", NewFileList},
    {"file get", NewFileGet},
    {"file put", NewFilePut},
    {"file remove", NewFileRemove},
    {"fault add", NewFaultAdd},
    {"fault list", NewFaultList},
    {"fault operations", NewFaultOperations},
    {"fault remove", NewFaultRemove},
    {"fault clear", NewFaultClear},
    {"feature list", NewFeatureList},
    {"feature set", NewFeatureSet},
};

}  // namespace

CommandPtr NewCommand(const std::string& path) {
  for (const auto& [name, make] : kEntries) {
    if (name == path) return make();
  }
  throw std::invalid_argument("the lab has no command \"" + path + "\"");
}

}  // namespace lab
