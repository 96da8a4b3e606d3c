#include "platform/autocli/AutoCli.h"
#include "platform/hostctl/Misc.h"
#include "platform/hostctl/Optional.h"
#include "tests/support/Record.h"

// What a host control library may lack, and what the framework does in place of a host.

using test::Given;
using test::Record;

namespace Tovrin::Korel {

void SetDefaultPolicy(KorelInfo&, KorelPolicyClass policyClass, Given value) {
  Record(__func__, policyClass, value);
}
void ClearDefaultPolicy(KorelInfo&, KorelPolicyClass policyClass) { Record(__func__, policyClass); }
std::vector<std::string> GetInactiveClusterUuids(KorelInfo&) {
  return test::Answer(test::current->inactiveClusters, __func__);
}
bool IsKorelMaxEnabled(KorelInfo&) { return test::Answer(test::current->isKorelMax, __func__); }
void AddStoragePoolDisks(KorelInfo&, const std::vector<std::string>& devices) {
  Record(__func__, devices);
}
void RemoveStoragePoolDisk(KorelInfo&, Given device, Given mode) { Record(__func__, device, mode); }
void RemoveStoragePoolDiskByUuid(KorelInfo&, Given uuid, Given mode) {
  Record(__func__, uuid, mode);
}

}  // namespace Tovrin::Korel

std::string Tovrin::Misc::HostPath(const std::string& path) { return test::current->root + path; }

int Corvex::AutoCli::AutoCli_ShellCmd(const std::string& line, std::string&, const std::string&) {
  test::current->calls.push_back("[" + line + "]");
  return 0;
}
