#include "lab/model/Lab.h"

#include "lab/base/Text.h"
#include "lab/model/Features.h"
#include "lab/model/Upgrade.h"
#include "lab/store/LabFile.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"

namespace lab {
namespace {

void Populate(Store& store, const std::vector<HostInventory>& hosts) {
  ResetFeatures(store);
  for (const HostInventory& host : hosts) AddHost(store, host);
}

/// Makes the lab of a new file, or brings one of an older version up to date. False when somebody
/// else has.
bool MakeReady(Store& store, const std::vector<HostInventory>& hosts) {
  if (!MayChange()) Fail("the lab is not ready for use, and nothing may change now");
  Transaction transaction(store, Access::ChangeLoosely);
  if (store.IsCurrent()) return false;
  std::string operation = UpgradeSchema(store);
  if (operation.empty()) {
    Populate(store, hosts);
    operation = "makes the lab";
  }
  const auto host = FindCurrentHost(store);
  transaction.CommitFirst({host ? host->name : "", operation});
  return true;
}

/// Throws UnusableLab when the file is damaged where nobody need have looked yet.
void CheckWhole(Store& store) {
  if (Texts(store, "PRAGMA quick_check(1)") == std::vector<std::string>{"ok"}) return;
  throw UnusableLab(store.GetPath(), "the lab " + Quoted(store.GetPath()) + " is damaged");
}

void Replace(const std::vector<HostInventory>& hosts, bool force) {
  if (MakeReady(Store::ForProcess(), hosts)) return;
  LabTransaction transaction(Access::Change);
  Store& store = transaction.GetStore();
  if (!force) Fail("there is a lab at ", Quoted(store.GetPath()), " already; --force replaces it");
  CheckWhole(store);
  // What refers to a row goes before it.
  for (auto table = kTables.rbegin(); table != kTables.rend(); ++table) {
    Execute(store, (std::string("DELETE FROM ") + table->name).c_str());
  }
  Populate(store, hosts);
  transaction.Commit();
}

/// Runs the work; an exception leaves as one that people can act on.
template <typename Work>
void Actionably(const Work& work) {
  try {
    work();
  } catch (...) {
    ThrowActionable();
  }
}

bool IsUnusable() {
  Store::CloseForProcess();
  try {
    Actionably([] {
      LabTransaction transaction(Access::Read);
      CheckWhole(transaction.GetStore());
    });
    return false;
  } catch (const UnusableLab&) {
    return true;
  }
}

}  // namespace

LabTransaction::LabTransaction(Access access, Store& store) : store_(store) { BeginAgain(access); }

void LabTransaction::BeginAgain(Access access) {
  transaction_.reset();
  transaction_.emplace(store_, access);
  if (store_.IsCurrent()) return;
  transaction_.reset();
  MakeReady(store_, {StandardHost("host1")});
  transaction_.emplace(store_, access);
}

void LabTransaction::Commit(const std::function<std::string()>& operation) {
  transaction_->Commit([&]() -> Origin {
    const auto host = FindCurrentHost(store_);
    return {host ? host->name : NamedHost(), operation()};
  });
}

void LabTransaction::CommitUnremembered() {
  transaction_->CommitUnremembered();
  transaction_.reset();
}

void InitLab(const std::vector<HostInventory>& hosts, bool force) {
  const auto replace = [&] { Replace(hosts, force); };
  try {
    Actionably(replace);
  } catch (const UnusableLab&) {
    if (!force) throw;
    SetAside(LabPath(), IsUnusable);
    Store::CloseForProcess();
    Actionably(replace);
  }
}

}  // namespace lab
