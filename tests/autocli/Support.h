#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "autocli/text/Sink.h"
#include "platform/autocli/Declare.h"

namespace autocli::test {

using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterConstraint;
using Corvex::CallSpec::ParameterSpec;
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

/// Keeps what is written, and in how many pieces.
class TextSink final : public Sink {
 public:
  std::string text;
  int pieces = 0;

 private:
  int Write(std::string_view piece) override {
    text += piece;
    ++pieces;
    return 0;
  }
};

/// A command whose parts a test sets as it likes.
class TestCommand final : public Corvex::AutoCli::Command {
 public:
  std::function<std::shared_ptr<InputSpec>()> input = [] { return InputSpec::New(); };
  MetaObjectPtr prototype = MetaBool::New();
  std::function<void(const InputPtr&, const OutputPtr&)> execute =
      [](const InputPtr&, const OutputPtr& output) { Corvex::Declare::Succeed(output); };

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return input(); }
  std::shared_ptr<Corvex::CallSpec::OutputSpec> GetOutputSpecInternal() override {
    return Corvex::Declare::Answers(prototype);
  }
  void ExecuteInternal(const InputPtr& in, const OutputPtr& out) override { execute(in, out); }
};

/// A disk record: Name, Size, Fast, Tags. Null stands for unset.
std::shared_ptr<MetaStruct> DiskPrototype();
std::shared_ptr<MetaStruct> Disk(const char* name, std::int64_t size, bool fast, const Words& tags);

/// What one run came to.
struct Ran {
  int status;
  std::string out;
  std::string err;
};

/// A tree with one namespace, "disk", and its commands "list" (records) and "grow" (options).
struct DiskTree {
  DiskTree();
  Ran Run(const Words& words, const Words& pluginFaults = {},
          const std::string& program = "/usr/bin/autocli") const;

  std::shared_ptr<Namespace> root = Namespace::New();
  std::shared_ptr<TestCommand> list = std::make_shared<TestCommand>();
  std::shared_ptr<TestCommand> grow = std::make_shared<TestCommand>();
};

/// A folder of the test's own, gone with it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& text);

}  // namespace autocli::test
