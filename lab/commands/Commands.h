#pragma once

#include <memory>

#include "platform/autocli/AutoCli.h"

/// The commands of `autocli lab`, in the order of their tree, each made by the file of its name.
namespace lab {

using CommandPtr = std::shared_ptr<Corvex::AutoCli::NamespaceNode>;

CommandPtr NewInit();
CommandPtr NewShow();
CommandPtr NewTry();
CommandPtr NewHistory();
CommandPtr NewUndo();
CommandPtr NewSave();
CommandPtr NewLoad();
CommandPtr NewDiff();
CommandPtr NewCheck();
CommandPtr NewHostAdd();
CommandPtr NewHostList();
CommandPtr NewHostSet();
CommandPtr NewHostReboot();
CommandPtr NewClusterList();
CommandPtr NewClusterShow();
CommandPtr NewMaintenanceStart();
CommandPtr NewResyncSet();
CommandPtr NewDiskList();
CommandPtr NewDiskSet();
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
CommandPtr NewFeatureList();
CommandPtr NewFeatureSet();

}  // namespace lab
