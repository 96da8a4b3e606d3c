#include "lab/model/AgentRecord.h"
#include "platform/hostctl/KorelUtil.h"

namespace HskCtl::Korel {

KorelUtil::KorelInfo::KorelUnicastAddressInfo KorelUtil::KorelUnicastAddressInfoFromString(
    const std::string& text, bool strict) {
  return lab::ParseAgentEntry(text, strict);
}

}  // namespace HskCtl::Korel
