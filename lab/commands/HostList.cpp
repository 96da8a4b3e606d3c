#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Clusters.h"
#include "lab/model/HostState.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabHost", {{"Name", MetaType::String},
                               {"Node UUID", MetaType::String},
                               {"Node Type", MetaType::String},
                               {"Fault Domain", MetaType::String},
                               {"Korel Max", MetaType::Bool},
                               {"Cluster UUIDs", MetaType::List}});
}

const char* NodeTypeText(const std::vector<Membership>& memberships) {
  if (memberships.empty()) return "none";
  const Membership& first = memberships.front();
  return first.isClient ? "client" : NodeTypeName(first.nodeType);
}

std::shared_ptr<MetaStruct> Describe(Store& store, const Host& host) {
  const auto memberships = ActiveMemberships(store, host);
  auto clusters = MetaList::New(MetaType::String);
  for (const Membership& membership : memberships) clusters->Add(membership.clusterUuid);
  auto record = Shape();
  record->SetField("Name", host.name);
  record->SetField("Node UUID", host.nodeUuid);
  record->SetField("Node Type", NodeTypeText(memberships));
  record->SetField("Fault Domain", host.faultDomain);
  record->SetField("Korel Max", IsKorelMax(store, host));
  record->SetField("Cluster UUIDs", clusters);
  return record;
}

class LabHostList final : public LabCommand {
 public:
  LabHostList() { Show(*this, *Shape(), "simple", "%Name%"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    ReadLab([&](Store& store) {
      for (const Host& host : AllHosts(store)) list->Add(Describe(store, host));
    });
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewHostList() { return std::make_shared<LabHostList>(); }

}  // namespace lab
