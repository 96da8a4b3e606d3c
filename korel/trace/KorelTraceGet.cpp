#include "korel/trace/Commands.h"
#include "korel/trace/TraceConfig.h"

namespace OstrelCli::KorelNamespace {

KorelTraceGet::KorelTraceGet() {
  SetDescription("Get the Korel tracing configuration.");
  Show(*this, *GetOutputStructure(), "simple");
  SetDefaultOutputParameter("units:KorelTraceGet.Maximum Trace File Size", "MB");
}

std::shared_ptr<MetaStruct> KorelTraceGet::GetOutputStructure() {
  return Structure("KorelTraceGet", {{"KOREL Traces Directory", MetaType::String},
                                     {"Number Of Files To Rotate", MetaType::Int},
                                     {"Maximum Trace File Size", MetaType::Int},
                                     {"Log Urgent Traces To Syslog", MetaType::Bool}});
}

std::shared_ptr<OutputSpec> KorelTraceGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void KorelTraceGet::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const auto failure = FailureOf([&] {
    const int status = KorelUtil::KorelExec(kTraceDaemon, "status", false, true, false);
    if (status < 0) throw KorelCtlException("Checking koreltraced status failed.");
    if (status == 3) return Refuse(output, "Korel is not enabled on this host.");
    const auto values = ReadTraceConfig();
    if (!values) return Refuse(output, "Error opening Korel trace config file for reading.");
    const auto answer = GetOutputStructure();
    answer->SetField("KOREL Traces Directory",
                     TraceDirectory(*values, kTraceLastSelectedVolume, "No volume selected."));
    answer->SetField("Number Of Files To Rotate", TraceValue(*values, kTraceMaxFiles));
    answer->SetField("Maximum Trace File Size", TraceValue(*values, kTraceFileSize));
    answer->SetField("Log Urgent Traces To Syslog", TraceValue(*values, kTraceUrgentToSyslog) != 0);
    output->SetRootObject(answer);
  });
  if (failure) Refuse(output, *failure + "Refer to /var/log/syslog.log for details.");
}

}  // namespace OstrelCli::KorelNamespace
