#include "autocli/tools/PluginList.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "autocli/plugin/Elf.h"
#include "autocli/plugin/Loader.h"
#include "autocli/run/Driver.h"
#include "autocli/tools/CompanionCheck.h"
#include "autocli/tools/Declarations.h"
#include "platform/autocli/Declare.h"

namespace autocli {

namespace Declare = Corvex::Declare;
using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::Output;
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

/// What a table has room for.
std::string Summary(const std::vector<std::string>& problems) {
  if (problems.size() < 2) return problems.front();
  return fmt::format("{} (and {} more)", problems.front(), problems.size() - 1);
}

class PluginList final : public Corvex::AutoCli::Command {
 public:
  PluginList(const std::vector<Plugin>& plugins, const Vocabulary& vocabulary)
      : plugins_(plugins), vocabulary_(vocabulary) {
    SetDescription(
        "List the plug-ins that were found, with what could not be loaded of them, and what their commands declare wrongly.");
    SetDefaultOutputFormatter("table");
  }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Declare::Inputs(
        {{.name = "folder",
          .description =
              "Load the plug-ins of this folder instead and examine them, before they are installed."}});
  }
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
    return Declare::Answers(Declare::ListOf(Prototype()));
  }
  void ExecuteInternal(const Declare::InputPtr& input, const Declare::OutputPtr& output) override {
    if (input->HasParameter("folder")) {
      vocabulary_.root = Namespace::New();
      plugins_ = LoadPlugins(input->GetParameter("folder"), vocabulary_.root, Trust::Anybody);
      vocabulary_.companions = Companions(plugins_, Trust::Anybody);
    }
    auto declared = DeclarationProblems(*vocabulary_.root);
    const auto list = Declare::ListOf(Prototype());
    for (const Plugin& plugin : plugins_) {
      std::vector<std::string> problems = plugin.clashes;
      std::ranges::move(declared[plugin.name], std::back_inserter(problems));
      list->Add(Row(plugin, std::move(problems), *output));
    }
    for (const std::string& problem : CompanionProblems(vocabulary_)) {
      output->AddErrorMessage(problem);
    }
    output->SetRootObject(list);
  }

  static std::shared_ptr<MetaStruct> Row(const Plugin& plugin, std::vector<std::string> problems,
                                         Output& output) {
    for (const std::string& problem : problems) {
      output.AddErrorMessage(fmt::format("plug-in \"{}\": {}", plugin.path, problem));
    }
    if (!plugin.trouble.reason.empty()) {
      output.AddErrorMessage(TroubleText(plugin));
      problems.insert(problems.begin(), plugin.trouble.reason);
    }
    auto record = Prototype();
    record->SetField("Name", plugin.name);
    record->SetField("Loaded", plugin.trouble.reason.empty());
    record->SetField("Path", plugin.path);
    const std::string version = ElfVersion(plugin.path);
    if (!version.empty()) record->SetField("Version", version);
    if (!problems.empty()) record->SetField("Problem", Summary(problems));
    return record;
  }

  std::vector<Plugin> plugins_;
  Vocabulary vocabulary_;
};

}  // namespace

int PluginsTool(const ToolCall& call) {
  return RunTool("--plugins", std::make_shared<PluginList>(call.plugins, call.vocabulary),
                 call.words, FaultKind::Plugin, call.out, call.err);
}

}  // namespace autocli
