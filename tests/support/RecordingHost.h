#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/hostctl/KorelUtil.h"

namespace test {

/// A host that answers as told and keeps the calls as readable lines: the operation and its
/// arguments, blanks between them, empty texts as "". The plug-in under test finds it through the
/// host control library's own names.
struct RecordingHost {
  using KorelInfo = Tovrin::Korel::KorelInfo;

  RecordingHost();
  ~RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;

  std::vector<std::string> calls;
  /// The operation throws this message, after it was kept as a call; "*" stands for each that is
  /// not named.
  std::map<std::string, std::string> failures;
  std::set<std::string> failingOnce;  ///< operations that throw only the first time

  bool hasInfo = true, enabled = false, clientMode = false, stretched = false, encryption = false;
  bool clientModeFeature = true, metadataFeature = true, trimFeature = true;
  std::vector<Tovrin::Korel::KorelPolicyClass> policyClasses = {
      Tovrin::Korel::KorelPolicyClass::Cluster, Tovrin::Korel::KorelPolicyClass::VmSwap};
  Tovrin::Korel::KorelNodeType nodeType = Tovrin::Korel::KorelNodeType::Normal;
  /// What UUID_CreateRandom answers; null when empty.
  std::string randomUuid = "12345678-0000-0000-0000-00000000000a";
  std::string clusterUuid = "00000000-0000-0000-0000-000000000000";
  std::vector<std::string> joinedClusters;
  std::vector<std::string> inactiveClusters;
  bool isKorelMax = false;
  std::vector<Tovrin::Korel::KorelDatastore> datastores;
  std::map<std::string, std::string> disks;  ///< name to UUID text: what the host sees
  std::vector<std::string> configuredDisks;  ///< UUID texts: what Korel uses
  Tovrin::Korel::KorelDiskInfo diskInfo;     ///< of every disk, name and UUID apart

  std::vector<KorelInfo::KorelUnicastAddressInfo> agents;
  std::vector<std::string> agentEntries;  ///< texts; "bad..." cannot be read
  std::vector<std::string> witnesses;
  bool agentRemoved = true;
  std::map<std::string, std::string> preferred;  ///< cluster UUID to name; the id is "id of NAME"
  Tovrin::Korel::KorelClusterInfoDetailed cluster;  ///< what the directory has of every cluster

  std::vector<Tovrin::Korel::KorelHskNicConfig2> interfaces;
  std::set<std::string> configured;  ///< "INTERFACE TYPE"
  std::int64_t number = 0;           ///< throttle, bandwidth, rekey interval

  std::set<std::string> poolDisks;  ///< names
  std::string usedPoolDisk;         ///< the one of them that the host uses
  std::vector<std::string> skippedDisks;
  std::string root;               ///< where host paths are found
  int status = 0, restarted = 0;  ///< exit statuses of the trace daemon's script
};

/// One run of a command line: the errors, each as "error: TEXT", then the root object, "none" when
/// there is none; parts are joined by " | ". Records read "Type{Field=value, ...}", lists "[a, b]",
/// unset values "-". A refused line is "usage: " and the first fault. Words are cut at blanks;
/// single quotes keep a word together.
std::string RunLine(const std::string& line);

/// Preparations of a host by the names that a table has for them.
using Hosts = std::map<std::string, std::function<void(RecordingHost&)>>;
/// Texts by the names that a table has for them, each with a dollar sign in front. They may have
/// the capital ones in them, which every table has: $A, $B and $C are UUIDs.
using Names = std::map<std::string, std::string, std::greater<>>;

/// Runs the rows of a table, each on a host of its own: "LINE -> OUTCOME <- CALLS", the calls
/// joined by " | ". Lines with the same result stand in one row, slashes between them. A row goes
/// on where the next line begins with two blanks. "[enabled, GetNodeType fails] LINE" says what the
/// host is before; "GetNodeType fails once" is possible, too. A row "! OUTCOME" is for the row
/// above when its last call fails, with "no luck".
void Check(const Hosts& hosts, const Names& names, const std::string& table);
inline void Check(const Hosts& hosts, const std::string& table) { Check(hosts, {}, table); }
inline void Check(const std::string& table) { Check({}, {}, table); }

}  // namespace test
