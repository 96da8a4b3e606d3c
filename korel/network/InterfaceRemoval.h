#pragma once

#include "korel/frame/Frame.h"

/// What "network remove" and "network ip remove" both do.
namespace OstrelCli::KorelNamespace {

std::shared_ptr<InputSpec> RemovalInputs();

/// Takes the interface out for either traffic type; a failure answers false.
void RemoveInterface(const InputPtr& input, const OutputPtr& output);

}  // namespace OstrelCli::KorelNamespace
