#include "tests/autocli/Support.h"

#include <fstream>
#include <sstream>

#include "autocli/driver/Driver.h"

namespace autocli::test {

using Corvex::Declare::Inputs;
using Corvex::Declare::IntRange;
using Corvex::Declare::ListOf;
using Corvex::Declare::Structure;

std::shared_ptr<MetaStruct> DiskPrototype() {
  return Structure("Disk", {{"Name", MetaType::String},
                            {"Size", MetaType::Int},
                            {"Fast", MetaType::Bool},
                            {"Tags", MetaType::List}});
}

std::shared_ptr<MetaStruct> Disk(const char* name, std::int64_t size, bool fast,
                                 const Words& tags) {
  auto disk = DiskPrototype();
  disk->SetField("Name", name);
  disk->SetField("Size", size);
  disk->SetField("Fast", fast);
  auto list = MetaList::New(MetaType::String);
  for (const auto& tag : tags) list->Add(tag);
  disk->SetField("Tags", list);
  return disk;
}

DiskTree::DiskTree() {
  list->SetDescription("List the disks");
  list->prototype = ListOf(DiskPrototype());
  list->execute = [](const InputPtr&, const OutputPtr& output) {
    auto disks = ListOf(DiskPrototype());
    disks->Add(Disk("a", 5, true, {"x", "y"}));
    output->SetRootObject(disks);
  };
  grow->SetDescription("Grow a disk");
  grow->input = [] {
    return Inputs({{.name = "name", .shortName = "n", .required = true},
                   {.name = "size",
                    .shortName = "s",
                    .type = ParameterType::Int,
                    .constraint = IntRange(-1, 512)}});
  };
  auto disk = Namespace::New();
  disk->SetDescription("Disks of the host");
  disk->RegisterNamespaceNode(list, "list");
  disk->RegisterNamespaceNode(grow, "grow");
  root->RegisterNamespaceNode(disk, "disk");
}

Ran DiskTree::Run(const Words& words, const Words& pluginFaults, const std::string& program) const {
  TextSink out;
  TextSink err;
  Words arguments = {program};
  arguments.insert(arguments.end(), words.begin(), words.end());
  const int status = autocli::Run(arguments, root, pluginFaults, out, err);
  return {status, out.text, err.text};
}

TemporaryFolder::TemporaryFolder() {
  path_ = std::filesystem::temp_directory_path() / "autocli-test-XXXXXX";
  if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder: " + path_);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace autocli::test
