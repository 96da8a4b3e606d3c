#pragma once

#include <utility>

#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {

/// The control interface of that host, which is stood on from now on.
std::unique_ptr<Tovrin::Korel::KorelInfo> At(const std::string& host);

// Acts of the host that is stood on.

void Create(const std::string& uuid);
void Join(const std::string& uuid,
          Tovrin::Korel::KorelNodeType type = Tovrin::Korel::KorelNodeType::Normal,
          const std::string& preferred = "");
void JoinWitness(const std::string& uuid, const std::string& preferred);
void JoinClient(const std::string& uuid);
void Leave(const std::string& uuid);
void Restore();

/// Runs one of the lab's own functions on that host.
template <typename Work, typename... Values>
void OnHost(const std::string& host, Work work, const Values&... values) {
  lab::ChangeLab([&](lab::Store& store) { work(store, lab::HostNamed(store, host), values...); });
}
void Reboot(const std::string& host);

/// Expects that each act of that host fails with the message beside it and changes nothing.
void ExpectRefusedAt(
    const std::string& host,
    const std::vector<std::pair<std::function<void()>, std::string>>& actsAndMessages);

/// host1 and host2 are in cluster A and host6 is its witness, host3 is in B, host4 in client
/// cluster C, host5 in none. It begins on host1.
class ClustersTest : public LabTest {
 protected:
  ClustersTest();
};

}  // namespace lab_test
