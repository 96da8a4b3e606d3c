#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

/// A host that was rebooted and not restored takes no part.
std::shared_ptr<MetaStruct> MemberShape() {
  return Structure("LabMember", {{"Host", MetaType::String},
                                 {"Node Type", MetaType::String},
                                 {"Fault Domain", MetaType::String},
                                 {"Takes Part", MetaType::Bool}});
}

std::shared_ptr<MetaStruct> Shape() {
  auto shape = Structure("LabCluster", {{"UUID", MetaType::String},
                                        {"Client", MetaType::Bool},
                                        {"Stretched", MetaType::Bool},
                                        {"Preferred Fault Domain", MetaType::String},
                                        {"Encrypted", MetaType::Bool},
                                        {"Rekey Interval", MetaType::Int},
                                        {"Generation", MetaType::Int},
                                        {"Changed", MetaType::String}});
  shape->SetField("Members", ListOf(MemberShape()));
  return shape;
}

std::shared_ptr<MetaStruct> DescribeMember(const ClusterMember& member) {
  auto record = MemberShape();
  record->SetField("Host", member.hostName);
  record->SetField("Node Type", NodeTypeName(member.nodeType));
  record->SetField("Fault Domain", member.faultDomain);
  record->SetField("Takes Part", member.isActive);
  return record;
}

std::shared_ptr<MetaStruct> Describe(Store& store, const Cluster& cluster) {
  const Encryption encryption = EncryptionOf(store, cluster.uuid);
  const auto generation = ConfigGeneration(store, cluster.id);
  auto members = ListOf(MemberShape());
  for (const ClusterMember& member : MembersOf(store, cluster.id)) {
    members->Add(DescribeMember(member));
  }
  auto record = Shape();
  record->SetField("UUID", cluster.uuid);
  record->SetField("Client", cluster.isClient);
  record->SetField("Stretched", IsStretched(store, cluster.id));
  if (!cluster.preferredFaultDomain.empty()) {
    record->SetField("Preferred Fault Domain", cluster.preferredFaultDomain);
  }
  record->SetField("Encrypted", encryption.isEnabled);
  record->SetField("Rekey Interval", encryption.rekeyMinutes);
  record->SetField("Generation", generation.number);
  record->SetField("Changed", generation.time);
  record->SetField("Members", members);
  return record;
}

class LabClusterShow final : public LabCommand {
 public:
  LabClusterShow() {
    Show(*this, *Shape(), "simple", "Cluster %UUID%");
    SetDefaultOutputParameter("units:LabCluster.Rekey Interval", "minutes");
  }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "uuid",
                    .shortName = "u",
                    .required = true,
                    .description = "UUID of the cluster, as \"lab cluster list\" shows it."}});
  }

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(Shape()); }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    output->SetRootObject(ReadLab([&](Store& store) {
      return Describe(store, ClusterOf(store, input->GetParameter("uuid")));
    }));
  }
};

}  // namespace

CommandPtr NewClusterShow() { return std::make_shared<LabClusterShow>(); }

}  // namespace lab
