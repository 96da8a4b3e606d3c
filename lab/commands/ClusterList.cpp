#include "lab/base/Text.h"
#include "lab/commands/Commands.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabClusters", {{"UUID", MetaType::String},
                                   {"Client", MetaType::Bool},
                                   {"Stretched", MetaType::Bool},
                                   {"Members", MetaType::String}});
}

}  // namespace

LabClusterList::LabClusterList() {
  SetDescription("List the clusters of the lab.");
  Show(*this, *Shape(), "table");
  SetDefaultOutputParameter("completes:UUID:Members",
                            "lab cluster show --uuid,korel cluster join --cluster-uuid");
}

std::shared_ptr<InputSpec> LabClusterList::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabClusterList::GetOutputSpecInternal() {
  return Answers(ListOf(Shape()));
}

void LabClusterList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    auto list = ListOf(Shape());
    ReadLab([&](Store& store) {
      for (const Cluster& cluster : AllClusters(store)) {
        auto record = Shape();
        record->SetField("UUID", cluster.uuid);
        record->SetField("Client", cluster.isClient);
        record->SetField("Stretched", IsStretched(store, cluster.id));
        record->SetField("Members", Joined(cluster.members, ", "));
        list->Add(record);
      }
    });
    output->SetRootObject(list);
  });
}

}  // namespace lab
