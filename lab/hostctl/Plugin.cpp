#include "lab/hostctl/Call.h"
#include "lab/hostctl/HandedOut.h"
#include "lab/hostctl/LabKorelInfo.h"

lab::LabKorelInfo::~LabKorelInfo() { TryToTakeInHostFiles(); }

namespace {

using Tovrin::Korel::KorelInfo;
using Tovrin::Lib::Korel::KorelPlugin;
using Tovrin::Lib::Korel::KorelPluginFactory;

class LabKorelPlugin final : public KorelPlugin {
 public:
  std::unique_ptr<KorelInfo> GetKorelInfo() override {
    try {
      lab::Call("GetKorelInfo", [] {});
      return std::make_unique<lab::LabKorelInfo>();
    } catch (const lab::FailedOnPurpose&) {
      return nullptr;
    }
  }
};

}  // namespace

std::unique_ptr<KorelPlugin> KorelPluginFactory::GetKorelPlugin() {
  return std::make_unique<LabKorelPlugin>();
}
