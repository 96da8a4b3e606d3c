#include "lab/conversions/PolicyClasses.h"
#include "lab/conversions/Uuids.h"
#include "lab/hostctl/Call.h"
#include "platform/hostctl/KorelUtil.h"

// Conversions of texts that may not be what they are to be. The others cannot fail on a real host
// either, and are not made to.

namespace HskCtl::Korel {

Tovrin::Korel::Uuid KorelUtil::StringToKorelUuid(const std::string& text) {
  lab::StrikeConversion("StringToKorelUuid");
  return lab::CheckedUuid(text);
}

Tovrin::Korel::KorelPolicyClass KorelUtil::StringToKorelPolicyClass(const std::string& text) {
  lab::StrikeConversion("StringToKorelPolicyClass");
  return lab::CheckedPolicyClass(text);
}

}  // namespace HskCtl::Korel
