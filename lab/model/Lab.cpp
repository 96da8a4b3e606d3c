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
  {
    Store& store = Store::ForProcess();
    Transaction transaction(store);
    const bool isNew = store.BringUpToDate() == Content::Nothing;
    if (!isNew && !force) {
      Fail("there is a lab at ", Quoted(store.GetPath()), " already; --force makes it anew");
    }
    if (isNew) RemoveRoots(store);
    Populate(store, hosts);
    // A rollback brings no files back, so the old hosts' go only when their rows are gone for good.
    if (!isNew) store.NoteNewHosts();
    transaction.Commit();
  }
  LabTransaction().Commit();
}

}  // namespace

LabTransaction::LabTransaction() : store_(Store::ForProcess()), transaction_(store_) {
  const Content content = store_.BringUpToDate();
  if (content == Content::Lab) return;
  RemoveRoots(store_);
  if (content == Content::Nothing) Populate(store_, {StandardHost("host1")});
  for (const Host& host : AllHosts(store_)) LayOutRoot(store_, host.name);
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
