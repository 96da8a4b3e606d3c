#include "lab/model/Lab.h"

#include "lab/common/Text.h"
#include "lab/model/Features.h"
#include "lab/model/HostRoot.h"
#include "lab/store/LabFile.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

void Populate(Store& store, const std::vector<HostInventory>& hosts) {
  // Clusters, memberships, devices and what else belongs to one of these goes with it.
  for (const char* table : {"hosts", "clusters", "features", "faults"}) {
    Execute(store, (std::string("DELETE FROM ") + table).c_str());
  }
  ResetFeatures(store);
  for (const HostInventory& host : hosts) AddHost(store, host);
}

void MakeAnew(const std::vector<HostInventory>& hosts, bool force) {
  Store& store = Store::ForProcess();
  Transaction transaction(store);
  if (!store.BringUpToDate() && !force) {
    Fail("there is a lab at ", Quoted(store.GetPath()), " already; --force makes it anew");
  }
  Populate(store, hosts);
  transaction.Commit();
  RemoveRoots(store);
  for (const HostInventory& host : hosts) LayOutRoot(store, host.name);
}

}  // namespace

LabTransaction::LabTransaction() : store_(Store::ForProcess()), transaction_(store_) {
  if (!store_.BringUpToDate()) return;
  RemoveRoots(store_);
  Populate(store_, {StandardHost("host1")});
}

void InitLab(const std::vector<HostInventory>& hosts, bool force) {
  const auto attempt = [&] {
    try {
      MakeAnew(hosts, force);
    } catch (...) {
      ThrowActionable();
    }
  };
  try {
    attempt();
  } catch (const UnusableLab&) {
    if (!force) throw;
    Store::CloseForProcess();
    SetAside(LabPath());
    attempt();
  }
}

}  // namespace lab
