#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Clusters.h"
#include "lab/model/Features.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"
#include "lab/model/TraceDaemon.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("Lab", {{"File", MetaType::String},
                           {"Schema Version", MetaType::Int},
                           {"Host", MetaType::String},
                           {"Daemon Running", MetaType::Bool},
                           {"Daemon Status", MetaType::Int},
                           {"Daemon Restart Status", MetaType::Int},
                           {"Hosts", MetaType::List},
                           {"Clusters", MetaType::List},
                           {"Features Off", MetaType::List},
                           {"Faults", MetaType::List}});
}

template <typename Element, typename Describe>
std::shared_ptr<MetaList> Described(const std::vector<Element>& elements, Describe describe) {
  auto list = MetaList::New(MetaType::String);
  for (const Element& element : elements) {
    if (const std::string text = describe(element); !text.empty()) list->Add(text);
  }
  return list;
}

std::shared_ptr<MetaStruct> Describe(Store& store) {
  const Host host = CurrentHost(store);
  auto record = Shape();
  record->SetField("File", store.GetPath());
  record->SetField("Schema Version", store.GetVersion());
  record->SetField("Host", host.name);
  record->SetField("Daemon Running", IsTraceDaemonRunning(store, host));
  const TraceAnswers answers = TraceAnswersOf(store, host);
  record->SetField("Daemon Status", MetaInt::New(answers.status));
  record->SetField("Daemon Restart Status", MetaInt::New(answers.restart));
  record->SetField("Hosts", Described(AllHosts(store), [](const Host& each) { return each.name; }));
  record->SetField("Clusters",
                   Described(AllClusters(store), [](const Cluster& each) { return each.uuid; }));
  record->SetField("Features Off", Described(AllFeatures(store), [](const FeatureSwitch& feature) {
                     return feature.isEnabled ? std::string() : feature.name;
                   }));
  record->SetField("Faults",
                   Described(AllInjectedFailures(store),
                             [](const InjectedFailure& failure) { return failure.operation; }));
  return record;
}

class LabShow final : public LabCommand {
 public:
  LabShow() { Show(*this, *Shape(), "simple"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(Shape()); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    output->SetRootObject(ReadLab(Describe));
  }
};

}  // namespace

CommandPtr NewShow() { return std::make_shared<LabShow>(); }

}  // namespace lab
