#include "korel/frame/Frame.h"

#include <cstdlib>
#include <cstring>

#include "platform/base/Uuid.h"

namespace OstrelCli::KorelNamespace {

HostControl::HostControl()
    : plugin_(Tovrin::Lib::Korel::KorelPluginFactory::GetKorelPlugin()),
      info_(plugin_->GetKorelInfo()) {
  if (!info_) throw KorelCtlException("Could not get KorelInfo. Plugin version mismatch?");
}

std::optional<std::string> FailureOf(const std::function<void()>& work) {
  try {
    work();
    return std::nullopt;
  } catch (const KorelCtlException& failure) {
    return failure.GetMessage();
  }
}

bool Attempt(const OutputPtr& output, const std::string& prefix,
             const std::function<void()>& work) {
  const auto failure = FailureOf(work);
  if (failure) output->AddErrorMessage(prefix + *failure);
  return !failure;
}

bool Attempt(const OutputPtr& output, const std::function<void()>& work) {
  return Attempt(output, "", work);
}

void AnswerFalse(const OutputPtr& output) { output->SetRootObject(MetaBool::New(false)); }

std::string JoinWithCommas(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) joined += ",";
    joined += text;
  }
  return joined;
}

std::string NewUuid() {
  const std::unique_ptr<char, decltype(&std::free)> created(UUID_CreateRandom(), &std::free);
  if (!created) return "";
  const char* packed = UUID_PackText(created.get(), created.get(), std::strlen(created.get()) + 1);
  return packed == nullptr ? "" : packed;
}

}  // namespace OstrelCli::KorelNamespace
