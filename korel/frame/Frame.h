#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "korel/frame/CommandClass.h"
#include "korel/frame/Constants.h"
#include "platform/autocli/Declare.h"
#include "platform/hostctl/KorelInfo.h"
#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Misc.h"

/// What every command of the plug-in uses.
namespace OstrelCli::KorelNamespace {

using namespace Corvex::Declare;
using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelInfo;
using Tovrin::Korel::KorelNodeType;
using Tovrin::Lib::Korel::KorelCtlException;
using Tovrin::Misc::StrCat;

/// The host's control interface, held for the length of one call.
class HostControl {
 public:
  /// Throws KorelCtlException when the host has no control interface to offer.
  HostControl();

  KorelInfo* operator->() const { return info_.get(); }
  KorelInfo& operator*() const { return *info_; }

 private:
  std::unique_ptr<Tovrin::Lib::Korel::KorelPlugin> plugin_;
  std::unique_ptr<KorelInfo> info_;
};

/// Runs host-control work. Returns the message of the KorelCtlException that ended it, nothing when
/// it came to its end; other exceptions pass.
std::optional<std::string> FailureOf(const std::function<void()>& work);

/// Runs host-control work and reports its failure as `prefix`, directly followed by the exception's
/// message. Returns whether the work came to its end (which a refusal inside it also is).
bool Attempt(const OutputPtr& output, const std::string& prefix, const std::function<void()>& work);

/// The same with the exception's message alone.
bool Attempt(const OutputPtr& output, const std::function<void()>& work);

/// The result is false, beside whatever error was reported.
void AnswerFalse(const OutputPtr& output);

/// The texts, a comma between neighbours.
std::string JoinWithCommas(const std::vector<std::string>& texts);

/// The text of a new random UUID; empty when none could be made.
std::string NewUuid();

}  // namespace OstrelCli::KorelNamespace
