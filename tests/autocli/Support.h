#pragma once

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <functional>
#include <sstream>
#include <utility>

#include "autocli/base/Sink.h"
#include "autocli/program/Program.h"
#include "platform/autocli/Declare.h"
#include "tests/support/Files.h"

namespace autocli::test {

namespace Declare = Corvex::Declare;
using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterType;
using Corvex::Declare::InputPtr;
using Corvex::Declare::OutputPtr;
using Corvex::MetaObj::MetaBool;
using Corvex::MetaObj::MetaInt;
using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObjectPtr;
using Corvex::MetaObj::MetaString;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;
using Words = std::vector<std::string>;

/// Keeps what is written, and in how many pieces. `error` is what the next write fails with. With
/// `columns` it is a terminal.
class TextSink final : public Sink {
 public:
  std::string text;
  int pieces = 0;
  int error = 0;
  std::optional<std::size_t> columns;

 private:
  std::optional<std::size_t> TerminalWidth() const override { return columns; }
  int Write(std::string_view piece) override {
    text += piece;
    ++pieces;
    return std::exchange(error, 0);
  }
};

/// A command whose parts a test sets as it likes.
class TestCommand final : public Corvex::AutoCli::Command {
 public:
  static std::shared_ptr<TestCommand> New() { return std::make_shared<TestCommand>(); }

  std::function<std::shared_ptr<InputSpec>()> input = [] { return InputSpec::New(); };
  MetaObjectPtr prototype = MetaBool::New();
  std::function<void(const InputPtr&, const OutputPtr&)> execute =
      [](const InputPtr&, const OutputPtr& output) { Declare::Succeed(output); };

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return input(); }
  std::shared_ptr<Corvex::CallSpec::OutputSpec> GetOutputSpecInternal() override {
    return Declare::Answers(prototype);
  }
  void ExecuteInternal(const InputPtr& in, const OutputPtr& out) override { execute(in, out); }
};

inline std::shared_ptr<MetaList> Texts(const Words& texts) {
  auto list = MetaList::New(MetaType::String);
  for (const auto& text : texts) list->Add(text);
  return list;
}

/// A disk record: Name, Size, Fast, Tags, all unset.
inline std::shared_ptr<MetaStruct> DiskPrototype() {
  return Declare::Structure("Disk", {{"Name", MetaType::String},
                                     {"Size", MetaType::Int},
                                     {"Fast", MetaType::Bool},
                                     {"Tags", MetaType::List}});
}

inline std::shared_ptr<MetaStruct> Disk(const char* name, std::int64_t size, bool fast,
                                        const Words& tags) {
  auto disk = DiskPrototype();
  disk->SetField("Name", name);
  disk->SetField("Size", size);
  disk->SetField("Fast", fast);
  disk->SetField("Tags", Texts(tags));
  return disk;
}

/// What one run came to.
struct Ran {
  bool operator==(const Ran&) const = default;
  friend void PrintTo(const Ran& ran, std::ostream* stream) {
    *stream << ran.status << "\nout: " << ran.out << "\nerr: " << ran.err;
  }

  int status;
  std::string out;
  std::string err;
};

/// What is said when Run() is given the plug-in fault "bad", and the line can do without it.
inline constexpr const char* kNotLoaded =
    "warning: plug-in \"/plugins/x.so\" could not be loaded: bad\n";

/// The companion of a plug-in that was loaded, as it seems.
struct TestCompanion {
  explicit TestCompanion(const std::string& json = "") {
    if (!json.empty()) Write(json);
  }

  void Write(const std::string& json) const {
    ::test::WriteFile(file, json);
    chmod(file.c_str(), 0644);
  }

  const ::test::Folder folder;
  const std::string file = folder / "disk.json";
  const std::vector<Plugin> plugins = {{folder / "disk.so", "disk.so"}};
};

/// A tree with one namespace, "disk", and its commands "list" (records) and "grow" (options).
struct DiskTree {
  DiskTree() {
    list->SetDescription("List the disks");
    list->prototype = Declare::ListOf(DiskPrototype());
    list->execute = [](const InputPtr&, const OutputPtr& output) {
      auto disks = Declare::ListOf(DiskPrototype());
      disks->Add(Disk("a", 5, true, {"x", "y"}));
      output->SetRootObject(disks);
    };
    grow->SetDescription("Grow a disk");
    grow->input = [] {
      return Declare::Inputs({
          {.name = "name", .shortName = "n", .required = true},
          {.name = "size", .type = ParameterType::Int, .constraint = Declare::IntRange(-1, 512)},
      });
    };
    auto disk = Namespace::New();
    disk->SetDescription("Disks of the host");
    disk->RegisterNamespaceNode(list, "list");
    disk->RegisterNamespaceNode(grow, "grow");
    root->RegisterNamespaceNode(disk, "disk");
  }

  /// Runs the words of the line, blanks between them.
  Ran Run(const std::string& line, const Words& pluginFaults = {},
          const std::string& program = "/usr/bin/autocli") const {
    TextSink out;
    TextSink err;
    Words arguments = {program};
    std::istringstream words(line);
    for (std::string word; words >> word;) arguments.push_back(word);
    std::vector<Plugin> plugins = loaded;
    for (const auto& fault : pluginFaults) plugins.push_back({"/plugins/x.so", "x.so", {fault}});
    const int status = autocli::Run(arguments, root, plugins, out, err);
    return {status, out.text, err.text};
  }

  std::vector<Plugin> loaded;  ///< beside the faults of a run
  std::shared_ptr<Namespace> root = Namespace::New();
  std::shared_ptr<TestCommand> list = std::make_shared<TestCommand>();
  std::shared_ptr<TestCommand> grow = std::make_shared<TestCommand>();
};

}  // namespace autocli::test
