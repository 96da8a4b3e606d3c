#include <cstdlib>
#include <sstream>

#include "tests/support/RecordingHost.h"

// A host control library with the operations that every one has and no others, made of the
// recording host. KORELCTL_FAILS names operations that fail, "*" all of them; KORELCTL_STATUS and
// KORELCTL_RESTARTED are the answers of the trace daemon's init script.
namespace {

int NumberIn(const char* variable) {
  const char* value = std::getenv(variable);
  return value == nullptr ? 0 : std::atoi(value);
}

struct Host : test::RecordingHost {
  Host() {
    policyClasses = {Tovrin::Korel::KorelPolicyClass::Vdisk};
    const char* failing = std::getenv("KORELCTL_FAILS");
    std::istringstream names(failing == nullptr ? "" : failing);
    for (std::string name; names >> name;) failures[name] = "no luck";
    status = NumberIn("KORELCTL_STATUS");
    restarted = NumberIn("KORELCTL_RESTARTED");
  }
} host;

}  // namespace
