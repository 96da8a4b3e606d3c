#include "lab/hostctl/Call.h"
#include "lab/hostctl/HandedOut.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"

lab::LabKorelInfo::~LabKorelInfo() { TryToTakeInHostFiles(); }

namespace {

using Tovrin::Korel::KorelInfo;
using Tovrin::Lib::Korel::KorelPlugin;
using Tovrin::Lib::Korel::KorelPluginFactory;

class LabKorelPlugin final : public KorelPlugin {
 public:
  std::unique_ptr<KorelInfo> GetKorelInfo() override {
    try {
      lab::Call("GetKorelInfo", lab::Arguments(), [](lab::Store&, const lab::Host&) {});
      return std::make_unique<lab::LabKorelInfo>();
    } catch (const lab::InjectedFailure&) {
      return nullptr;
    }
  }
};

}  // namespace

std::unique_ptr<KorelPlugin> KorelPluginFactory::GetKorelPlugin() {
  return std::make_unique<LabKorelPlugin>();
}
