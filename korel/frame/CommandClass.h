#pragma once

#include <memory>

#include "platform/autocli/Declare.h"

/// What every command class is: made by New() alone, without options and with a truth value for its
/// result unless the class `Own` says otherwise.
namespace OstrelCli::KorelNamespace {

using Corvex::AutoCli::Command;

/// The usual form: the framework's node is a virtual base, so that a class can be made of two
/// commands and still be one node of the tree.
template <typename Own>
class VirtualCommand : public virtual Command {
 public:
  /// A new command, which knows its own handle.
  static std::shared_ptr<Own> New() { return std::shared_ptr<Own>(new Own); }

 private:
  std::shared_ptr<Corvex::CallSpec::InputSpec> GetInputSpecInternal() override {
    return Corvex::Declare::Inputs();
  }
  std::shared_ptr<Corvex::CallSpec::OutputSpec> GetOutputSpecInternal() override {
    return Corvex::Declare::Answers(Corvex::MetaObj::MetaBool::New());
  }
};

/// The form of commands that nothing is made of: the node lies at a fixed place in the object, and
/// who has the node can cast it down to the class.
template <typename Own>
class PlainCommand : public Command {
 public:
  static std::shared_ptr<Own> New() { return std::shared_ptr<Own>(new Own); }

 private:
  std::shared_ptr<Corvex::CallSpec::InputSpec> GetInputSpecInternal() override {
    return Corvex::Declare::Inputs();
  }
  std::shared_ptr<Corvex::CallSpec::OutputSpec> GetOutputSpecInternal() override {
    return Corvex::Declare::Answers(Corvex::MetaObj::MetaBool::New());
  }
};

}  // namespace OstrelCli::KorelNamespace
