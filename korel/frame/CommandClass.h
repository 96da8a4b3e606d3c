#pragma once

#include <memory>

#include "platform/autocli/Declare.h"

/// The base of every command class: only New() makes one. It has no options, and its result is a
/// truth value, unless the class `Own` says otherwise.
namespace OstrelCli::KorelNamespace {

using Corvex::AutoCli::Command;

/// The usual form: the framework's node is a virtual base, so that a class can be made of two
/// commands and still be one node of the tree.
template <typename Own>
class VirtualCommand : public virtual Command {
 public:
  /// Declared first, and so first in the table of virtual operations, as in a PlainCommand.
  ~VirtualCommand() override = default;

  static std::shared_ptr<Own> New() { return std::shared_ptr<Own>(new Own); }

 private:
  std::shared_ptr<Corvex::CallSpec::InputSpec> GetInputSpecInternal() override {
    return Corvex::Declare::Inputs();
  }
  std::shared_ptr<Corvex::CallSpec::OutputSpec> GetOutputSpecInternal() override {
    return Corvex::Declare::Answers(Corvex::MetaObj::MetaBool::New());
  }
};

/// The form of some older commands: the node has a fixed place in the object, so that it can be
/// cast down to the class.
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
