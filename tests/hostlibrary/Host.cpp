#include <cstdlib>
#include <sstream>

#include "tests/support/RecordingHost.h"

// A host control library with the operations that every one has and no others, made of the
// recording host. KORELCTL_FAILS names operations that fail, "*" all of them.
namespace {

struct Host : test::RecordingHost {
  Host() {
    policyClasses = {Tovrin::Korel::KorelPolicyClass::Vdisk};
    const char* failing = std::getenv("KORELCTL_FAILS");
    std::istringstream names(failing == nullptr ? "" : failing);
    for (std::string name; names >> name;) failures[name] = "no luck";
  }
} host;

}  // namespace
