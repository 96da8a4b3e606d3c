#include "lab/model/Picture.h"

#include <algorithm>
#include <map>

#include "lab/base/Text.h"
#include "lab/model/AgentRecord.h"
#include "lab/model/Agents.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/Disks.h"
#include "lab/model/HostState.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

/// A text for DOT, in quotes, where an ampersand begins a character of HTML.
std::string Word(const std::string& text) {
  std::string word = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') word += '\\';
    word += c;
    if (c == '&') word += "amp;";
  }
  return word + '"';
}

/// A text within DOT's HTML.
std::string Html(const std::string& text) {
  std::string html;
  for (const char c : text) {
    if (c == '&') {
      html += "&amp;";
    } else if (c == '<') {
      html += "&lt;";
    } else if (c == '>') {
      html += "&gt;";
    } else {
      html += c;
    }
  }
  return html;
}

std::string NodeOfHost(const std::string& name) { return Word("host " + name); }
std::string NodeOfCluster(const std::string& uuid) { return Word("cluster " + uuid); }

std::string TableRow(const std::string& content, const char* look = "") {
  return "<TR><TD ALIGN=\"LEFT\"" + std::string(look) + ">" + content + "</TD></TR>";
}

/// "mpx.dkhba2:C0:T1:L0: 250 of 1000 GB, 25 %".
std::string Fullness(const Device& device) {
  const std::int64_t used = device.claim->usedGb;
  std::string text = device.name + ": " + std::to_string(used) + " of " +
                     std::to_string(device.sizeGb) + " GB, " +
                     std::to_string(used * 100 / device.sizeGb) + " %";
  if (!device.isHealthy) text += ", unhealthy";
  if (!device.claim->isMounted) text += ", not mounted";
  return Html(text);
}

const char* LookOf(const Device& device) {
  if (!device.isHealthy) return " BGCOLOR=\"#f4b6b6\"";
  return device.claim->isMounted ? "" : " BGCOLOR=\"#dddddd\"";
}

/// The host's disk groups and its pool, a row for each and for each disk.
std::string DiskRows(Store& store, const Host& host) {
  const Devices devices = DevicesOf(store, host);
  std::string rows;
  for (const Device& caching : devices) {
    if (!caching.IsCachingOfGroup()) continue;
    const std::string state = std::string(caching.isHealthy ? "" : ", unhealthy") +
                              (caching.claim->isMounted ? "" : ", not mounted");
    rows += "<HR/>" + TableRow("disk group " + Html(caching.name + state), LookOf(caching));
    for (const Device& disk : devices) {
      const bool isOfGroup = disk.IsInGroup() && disk.claim->cachingDevice == caching.id;
      if (isOfGroup && disk.id != caching.id) rows += TableRow(Fullness(disk), LookOf(disk));
    }
  }
  bool isFirst = true;
  for (const Device& disk : devices) {
    if (!disk.IsInPool()) continue;
    if (isFirst) rows += "<HR/>" + TableRow("storage pool");
    isFirst = false;
    rows += TableRow(Fullness(disk), LookOf(disk));
  }
  return rows;
}

std::string HostLine(Store& store, const Host& host) {
  std::vector<std::string> state;
  const auto parts = ActiveMemberships(store, host);
  if (!parts.empty()) {
    state.emplace_back(parts.front().isClient ? "client" : NodeTypeName(parts.front().nodeType));
  }
  if (IsKorelMax(store, host)) state.emplace_back("Korel Max");
  if (MaintenanceState(store, host) != "OFF") state.emplace_back("in maintenance");
  return "    " + NodeOfHost(host.name) +
         " [shape=plain, label=<<TABLE STYLE=\"ROUNDED\" CELLBORDER=\"0\">" +
         TableRow("<B>" + Html(host.name) + "</B>") +
         (state.empty() ? "" : TableRow(Html(Joined(state, ", ")))) + DiskRows(store, host) +
         "</TABLE>>]";
}

void AddSites(Store& store, std::vector<std::string>& lines) {
  std::map<std::string, std::vector<std::string>> sites;
  for (const Host& host : AllHosts(store)) {
    sites[host.faultDomain].push_back(HostLine(store, host));
  }
  int number = 0;
  for (const auto& [name, hosts] : sites) {
    // DOT draws a frame round what is named so.
    lines.push_back("  subgraph cluster" + std::to_string(++number) + " {");
    lines.push_back("    label=" + Word("fault domain " + name));
    lines.insert(lines.end(), hosts.begin(), hosts.end());
    lines.emplace_back("  }");
  }
}

void AddCluster(Store& store, const Cluster& cluster, std::vector<std::string>& lines) {
  std::string text = "<B>" + std::string(cluster.isClient ? "client cluster" : "cluster") +
                     "</B><BR/>" + cluster.uuid;
  if (IsStretched(store, cluster.id)) text += "<BR/>stretched";
  if (!cluster.preferredFaultDomain.empty()) {
    text += "<BR/>prefers fault domain " + Html(cluster.preferredFaultDomain);
  }
  for (const std::string& name :
       Texts(store, "SELECT name FROM datastores WHERE cluster = ? ORDER BY isDefault DESC, name",
             cluster.id)) {
    text += "<BR/>datastore " + Html(name);
  }
  lines.push_back("  " + NodeOfCluster(cluster.uuid) + " [shape=box, style=filled, " +
                  "fillcolor=\"#e8f0fa\", label=<" + text + ">]");
  for (const ClusterMember& member : MembersOf(store, cluster.id)) {
    const std::string role =
        member.isActive
            ? DirectoryInfo(store, HostNamed(store, member.hostName), cluster.uuid).nodeRole
            : "not restored";
    lines.push_back("  " + NodeOfHost(member.hostName) + " -> " + NodeOfCluster(cluster.uuid) +
                    " [label=" + Word(role) + (member.isActive ? "]" : ", style=dashed]"));
  }
}

void AddMounts(Store& store, std::vector<std::string>& lines) {
  for (const Row& row :
       Query(store,
             "SELECT mounting.uuid, owner.uuid, mounts.name FROM mounts "
             "JOIN clusters AS mounting ON mounting.id = mounts.cluster "
             "JOIN datastores ON datastores.id = mounts.datastore "
             "JOIN clusters AS owner ON owner.id = datastores.cluster ORDER BY 1, 3")) {
    lines.push_back("  " + NodeOfCluster(row.Text(0)) + " -> " + NodeOfCluster(row.Text(1)) +
                    " [color=\"#3a6ea5\", label=" + Word("mounts " + row.Text(2)) + "]");
  }
}

void AddAgents(Store& store, std::vector<std::string>& lines) {
  const auto hosts = AllHosts(store);
  for (const Host& host : hosts) {
    for (const Agent& agent : AgentsOf(store, host, true, "")) {
      const auto known = std::find_if(hosts.begin(), hosts.end(), [&](const Host& each) {
        return each.nodeUuid == agent.nodeUuid;
      });
      const std::string target =
          known == hosts.end() ? Word("address " + agent.address) : NodeOfHost(known->name);
      if (known == hosts.end()) {
        lines.push_back("  " + target + " [shape=plaintext, label=" + Word(agent.address) + "]");
      }
      lines.push_back(
          "  " + NodeOfHost(host.name) + " -> " + target + " [style=dotted, label=" +
          Word(std::string(AgentTypeName(agent.isWitness)) + " agent " + agent.address) + "]");
    }
  }
}

}  // namespace

std::vector<std::string> Picture(Store& store) {
  std::vector<std::string> lines{
      "digraph lab {",
      "  graph [fontname=\"sans-serif\", fontsize=11, ranksep=1]",
      "  node [fontname=\"sans-serif\", fontsize=10]",
      "  edge [fontname=\"sans-serif\", fontsize=9]",
  };
  AddSites(store, lines);
  for (const Cluster& cluster : AllClusters(store)) AddCluster(store, cluster, lines);
  AddMounts(store, lines);
  AddAgents(store, lines);
  lines.emplace_back("}");
  return lines;
}

}  // namespace lab
