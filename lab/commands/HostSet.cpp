#include "lab/base/Text.h"
#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Clusters.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelNodeType;

constexpr KorelNodeType kNodeTypes[] = {KorelNodeType::Normal, KorelNodeType::Witness,
                                        KorelNodeType::Metadata};

KorelNodeType NodeTypeNamed(const std::string& name) {
  for (const KorelNodeType nodeType : kNodeTypes) {
    if (name == NodeTypeName(nodeType)) return nodeType;
  }
  Fail("there is no node type ", Quoted(name));
}

void SetFaultDomainOrDefault(Store& store, const Host& host, const std::string& name) {
  if (name.empty()) {
    ResetFaultDomain(store, host);
  } else {
    SetFaultDomain(store, host, name);
  }
}

class LabHostSet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    std::vector<ParameterConstraint::EnumValue> nodeTypes;
    for (const KorelNodeType nodeType : kNodeTypes) {
      nodeTypes.push_back({NodeTypeName(nodeType), ""});
    }
    return Inputs({HostName(),
                   {.name = "fault-domain",
                    .shortName = "d",
                    .description = "Name of its fault domain; empty for one of its own."},
                   {.name = "node-type",
                    .shortName = "t",
                    .constraint = StringEnum(nodeTypes),
                    .description = "What it is to its clusters: %ENUM%."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    if (!input->HasParameter("fault-domain") && !input->HasParameter("node-type")) {
      return Refuse(output, "nothing to set; give --fault-domain or --node-type");
    }
    ChangeLab([&](Store& store) {
      const Host host = ChosenHost(store, input);
      if (input->HasParameter("fault-domain")) {
        SetFaultDomainOrDefault(store, host, input->GetParameter("fault-domain"));
      }
      if (input->HasParameter("node-type")) {
        SetNodeType(store, host, NodeTypeNamed(input->GetParameter("node-type")));
      }
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewHostSet() { return std::make_shared<LabHostSet>(); }

}  // namespace lab
