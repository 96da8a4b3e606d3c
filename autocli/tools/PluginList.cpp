#include "autocli/tools/PluginList.h"

#include "autocli/plugin/Elf.h"
#include "autocli/plugin/Loader.h"
#include "autocli/run/Driver.h"
#include "autocli/tools/CompanionCheck.h"
#include "platform/autocli/Declare.h"

namespace autocli {

namespace Declare = Corvex::Declare;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::OutputSpec;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

namespace {

std::shared_ptr<MetaStruct> Prototype() {
  return Declare::Structure("Plugin", {{"Name", MetaType::String},
                                       {"Version", MetaType::String},
                                       {"Loaded", MetaType::Bool},
                                       {"Path", MetaType::String},
                                       {"Problem", MetaType::String}});
}

class PluginList final : public Corvex::AutoCli::Command {
 public:
  explicit PluginList(const std::vector<Plugin>& plugins) : plugins_(plugins) {
    SetDescription("List the plug-ins that were found, and why any was refused.");
    SetDefaultOutputFormatter("table");
  }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return InputSpec::New(); }
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
    return Declare::Answers(Declare::ListOf(Prototype()));
  }
  void ExecuteInternal(const Declare::InputPtr&, const Declare::OutputPtr& output) override {
    auto list = Declare::ListOf(Prototype());
    for (const Plugin& plugin : plugins_) {
      auto record = Prototype();
      record->SetField("Name", plugin.name);
      record->SetField("Loaded", plugin.problem.empty());
      record->SetField("Path", plugin.path);
      const std::string version = ElfVersion(plugin.path);
      if (!version.empty()) record->SetField("Version", version);
      if (!plugin.problem.empty()) record->SetField("Problem", plugin.problem);
      list->Add(record);
    }
    output->SetRootObject(list);
  }

  const std::vector<Plugin>& plugins_;
};

}  // namespace

int PluginsTool(const ToolCall& call) {
  std::vector<Fault> faults = FaultsOf(call.plugins);
  for (const std::string& problem : CompanionProblems(call.vocabulary)) {
    faults.push_back({FaultKind::Plugin, problem});
  }
  return RunTool("--plugins", std::make_shared<PluginList>(call.plugins), call.words, faults,
                 call.out, call.err);
}

}  // namespace autocli
