#include "lab/model/Check.h"

#include <algorithm>
#include <functional>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Agents.h"
#include "lab/model/CheckRules.h"
#include "lab/model/Features.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Hosts.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Policies.h"
#include "lab/model/Trace.h"
#include "lab/store/Changeset.h"
#include "lab/store/Memory.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Lib::Korel::KorelCtlException;

/// Gathers what is wrong, and counts what is too much to list.
class Findings {
 public:
  void Add(const std::string& problem) {
    constexpr std::size_t kMostListed = 100;
    if (problems_.size() < kMostListed) {
      problems_.push_back(problem);
    } else {
      ++unlisted_;
    }
  }

  /// Adds what the check throws.
  void Try(const std::string& subject, const std::function<void()>& check) {
    try {
      check();
    } catch (const KorelCtlException& failure) {
      Add(subject + ": " + failure.GetMessage());
    }
  }

  bool IsEmpty() const { return problems_.empty(); }

  std::vector<std::string> Take() {
    if (unlisted_ > 0) problems_.push_back("and " + std::to_string(unlisted_) + " more problems");
    return std::move(problems_);
  }

 private:
  std::vector<std::string> problems_;
  std::size_t unlisted_ = 0;
};

void CheckStructure(Store& store, Findings& findings) {
  for (const std::string& line : Texts(store, "PRAGMA integrity_check")) {
    if (line != "ok") findings.Add("the file is damaged: " + line);
  }
}

void CheckReferences(Store& store, Findings& findings) {
  for (const Row& row : Query(store, "PRAGMA foreign_key_check")) {
    findings.Add("a row of " + row.Text(0) + " refers to one of " + row.Text(2) +
                 " that is not there");
  }
}

void CheckRules(Store& store, Findings& findings) {
  for (const auto& [sql, kind, problem] : kRules) {
    for (const Row& row : Query(store, sql)) {
      findings.Add(std::string(kind) + " " + Quoted(row.Text(0)) + " " + problem);
    }
  }
}

void CheckHosts(Store& store, Findings& findings) {
  for (const Host& host : AllHosts(store)) {
    findings.Try("host " + Quoted(host.name), [&] { CheckFaultDomainName(host.faultDomain); });
  }
  if (!Exists(store, "SELECT 1 FROM hosts")) findings.Add("the lab has no host");
}

void CheckAgents(Store& store, Findings& findings) {
  for (const Agent& agent : AllAgents(store)) {
    findings.Try("unicast agent " + Quoted(agent.address), [&] { CheckedAgent(agent); });
  }
}

void CheckNameOf(const std::string& name, const std::string& kind) { CheckPlainName(kind, name); }

/// The two texts of each row, held against what they may be.
void CheckPairs(Store& store, Findings& findings, const char* sql,
                const std::function<void(const std::string&, const std::string&)>& check) {
  for (const Row& row : Query(store, sql)) {
    const std::string name = row.Text(0);
    const std::string value = row.Text(1);
    findings.Try(Quoted(name), [&] { check(name, value); });
  }
}

void CheckDeviceName(const std::string& name, const std::string&) {
  if (!IsPlainName(name, true)) Fail("this is no name of a device");
}

void CheckUuid(const std::string&, const std::string& uuid) {
  if (CanonicalNewUuid(uuid) != uuid) Fail(Quoted(uuid), " is not in lower case");
}

void CheckNames(Store& store, Findings& findings) {
  CheckPairs(store, findings, "SELECT name, 'host' FROM hosts", CheckNameOf);
  CheckPairs(store, findings, "SELECT name, 'datastore' FROM datastores", CheckNameOf);
  CheckPairs(store, findings, "SELECT name, 'datastore' FROM mounts", CheckNameOf);
  CheckPairs(store, findings, "SELECT name, 'interface' FROM interfaces", CheckNameOf);
  CheckPairs(store, findings, "SELECT name, '' FROM devices", CheckDeviceName);
  CheckPairs(store, findings,
             "SELECT name, nodeUuid FROM hosts UNION ALL SELECT name, uuid FROM devices UNION ALL "
             "SELECT uuid, uuid FROM clusters UNION ALL SELECT name, uuid FROM datastores",
             CheckUuid);
}

void CheckTexts(Store& store, Findings& findings) {
  CheckPairs(store, findings, "SELECT class, value FROM policies",
             [](const std::string&, const std::string& value) { CheckPolicy(value); });
  CheckPairs(store, findings, "SELECT name, value FROM traceOptions", CheckTraceOption);
  CheckPairs(store, findings, "SELECT path, '' FROM files",
             [](const std::string& path, const std::string&) { CheckHostPath(path); });
  CheckPairs(store, findings, "SELECT operation, '' FROM faults",
             [](const std::string& name, const std::string&) { CheckOperation(name); });
  if (Texts(store, "SELECT name FROM features ORDER BY name") != FeatureNames()) {
    findings.Add("the features are not those of a lab");
  }
}

void CheckMemory(Store& store, Findings& findings) {
  for (const Entry& entry : EntriesAfter(store, 0)) {
    if (!entry.changes) continue;
    findings.Try("entry " + std::to_string(entry.number),
                 [&] { CountRows(store, *entry.changes); });
  }
}

}  // namespace

std::vector<std::string> Problems(Store& store) {
  Findings findings;
  CheckStructure(store, findings);
  // Rows of a damaged file may be read or not, as SQLite has its pages at hand.
  if (!findings.IsEmpty()) return findings.Take();
  for (const auto check : {CheckReferences, CheckRules, CheckHosts, CheckAgents, CheckNames,
                           CheckTexts, CheckMemory}) {
    check(store, findings);
  }
  return findings.Take();
}

}  // namespace lab
