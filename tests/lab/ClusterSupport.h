#pragma once

#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {

// Acts of the host that is stood on.

void Create(const std::string& uuid);
void Join(const std::string& uuid,
          Tovrin::Korel::KorelNodeType type = Tovrin::Korel::KorelNodeType::Normal,
          const std::string& preferred = "");
void JoinWitness(const std::string& uuid, const std::string& preferred);
void JoinClient(const std::string& uuid);
void Leave(const std::string& uuid);

/// Runs one of the lab's own functions on that host.
template <typename Work, typename... Values>
void OnHost(const std::string& host, Work work, const Values&... values) {
  lab::InLab([&](lab::Store& store) { work(store, lab::HostNamed(store, host), values...); });
}
void Reboot(const std::string& host);

/// The directory's record of the cluster, as the host that is stood on sees it.
Tovrin::Korel::KorelClusterInfoDetailed Directory(const std::string& uuid);
/// How many changes of the cluster there were.
std::int64_t Generation(const std::string& uuid);
std::string NodeUuidOf(const std::string& host);

}  // namespace lab_test
