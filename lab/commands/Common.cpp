#include "lab/commands/Common.h"

#include "platform/hostctl/KorelCtlException.h"

namespace lab {

void Attempt(const OutputPtr& output, const std::function<void()>& work) {
  try {
    work();
  } catch (const Tovrin::Lib::Korel::KorelCtlException& failure) {
    Refuse(output, failure.GetMessage());
  }
}

Parameter HostName() {
  return {.name = "name",
          .shortName = "n",
          .description = "Name of the host; the one that commands act on when not given."};
}

Host ChosenHost(Store& store, const InputPtr& input) {
  return input->HasParameter("name") ? HostNamed(store, input->GetParameter("name"))
                                     : CurrentHost(store);
}

}  // namespace lab
