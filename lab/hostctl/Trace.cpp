#include "lab/model/Trace.h"

#include "lab/hostctl/Call.h"
#include "lab/model/TraceDaemon.h"
#include "platform/hostctl/KorelUtil.h"

namespace HskCtl::Korel {

void KorelUtil::SetTracedLogOptions(const std::unordered_map<std::string, std::string>& options) {
  // Sorted, so that equal calls make equal lines.
  lab::Call("SetTracedLogOptions", lab::SetTraceOptions,
            lab::TraceOptions(options.begin(), options.end()));
}

int KorelUtil::KorelExec(const std::string& path, const std::string& arguments, bool inShell,
                         bool wait, bool showOutput) {
  return lab::Call("KorelExec", lab::Arguments(path, arguments, inShell, wait, showOutput),
                   lab::RunHostProgram, path, arguments);
}

}  // namespace HskCtl::Korel
