#pragma once

#include <memory>

#include "platform/autocli/Declare.h"

namespace OstrelCli::KorelNamespace {

using Corvex::AutoCli::Command;

/// What every command class is: made by New() alone, without options and with a truth value for a
/// result, unless the class `Own` says otherwise. It says what it does by ExecuteInternal.
template <typename Own, typename Base>
class CommandClass : public Base {
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

struct VirtualBase : virtual Command {};

/// The usual form: the framework's node is a virtual base, so that a class can be made of two
/// commands and still be one node of the tree.
template <typename Own>
using VirtualCommand = CommandClass<Own, VirtualBase>;

/// The form of commands that nothing is made of: the node lies at a fixed place in the object, and
/// who has the node can cast it down to the class.
template <typename Own>
using PlainCommand = CommandClass<Own, Command>;

}  // namespace OstrelCli::KorelNamespace
