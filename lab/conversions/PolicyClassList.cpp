#include "platform/hostctl/KorelUtil.h"

// In a file of its own: tests of korel/ take the conversions from here, and have a list of theirs.

std::vector<Tovrin::Korel::KorelPolicyClass> HskCtl::Korel::KorelUtil::GetKorelPolicyClasses() {
  using enum Tovrin::Korel::KorelPolicyClass;
  return {Cluster, Vdisk, VmNamespace, VmSwap, Vmem};
}
