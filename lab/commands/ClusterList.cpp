#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabClusters", {{"UUID", MetaType::String},
                                   {"Client", MetaType::Bool},
                                   {"Stretched", MetaType::Bool},
                                   {"Members", MetaType::List}});
}

class LabClusterList final : public LabCommand {
 public:
  LabClusterList() { Show(*this, *Shape(), "table"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    ReadLab([&](Store& store) {
      for (const Cluster& cluster : AllClusters(store)) {
        auto record = Shape();
        record->SetField("UUID", cluster.uuid);
        record->SetField("Client", cluster.isClient);
        record->SetField("Stretched", IsStretched(store, cluster.id));
        auto members = MetaList::New(MetaType::String);
        for (const std::string& name : cluster.members) members->Add(name);
        record->SetField("Members", members);
        list->Add(record);
      }
    });
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewClusterList() { return std::make_shared<LabClusterList>(); }

}  // namespace lab
