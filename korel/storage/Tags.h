#pragma once

#include "korel/frame/Frame.h"

namespace OstrelCli::KorelNamespace {

/// The parameters of the tag commands, with their own descriptions.
std::shared_ptr<InputSpec> TagInputs(const char* tagDescription, const char* diskDescription);

/// An operation on the disk of that name.
using TagOperation = void (KorelInfo::*)(const std::string& device);

/// Reads the disk and the tag and runs the tag's operation. Failures are reported after `prefix`.
void ApplyTag(const InputPtr& input, const OutputPtr& output, const char* prefix,
              TagOperation korelDirect, TagOperation capacityFlash);

}  // namespace OstrelCli::KorelNamespace
