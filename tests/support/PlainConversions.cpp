#include "lab/conversions/PolicyClasses.h"
#include "lab/conversions/Uuids.h"

// The conversions that a lab can make fail, without a lab.

namespace HskCtl::Korel {

Tovrin::Korel::Uuid KorelUtil::StringToKorelUuid(const std::string& text) {
  return lab::CheckedUuid(text);
}

Tovrin::Korel::KorelPolicyClass KorelUtil::StringToKorelPolicyClass(const std::string& text) {
  return lab::CheckedPolicyClass(text);
}

}  // namespace HskCtl::Korel
