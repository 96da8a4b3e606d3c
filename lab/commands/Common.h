#pragma once

#include <functional>
#include <memory>
#include <string>

#include "lab/model/Hosts.h"
#include "platform/autocli/Declare.h"

/// What the commands of `autocli lab` share.
namespace lab {

using Corvex::AutoCli::Command;
using namespace Corvex::Declare;  // NOLINT: the vocabulary of every command

/// A command class: declares New().
template <typename Derived>
class LabCommand : public Command {
 public:
  static std::shared_ptr<Derived> New() { return std::make_shared<Derived>(); }
};

/// Runs `work`; a KorelCtlException becomes the command's error message, without a result.
void Attempt(const OutputPtr& output, const std::function<void()>& work);

/// The parameter "name" of commands that act on one host of the lab.
Parameter HostName();
/// The host that it names; without it the one that commands act on. Throws KorelCtlException.
Host ChosenHost(Store& store, const InputPtr& input);

}  // namespace lab
