#include <unordered_map>

#include "korel/trace/Commands.h"
#include "korel/trace/TraceConfig.h"

namespace OstrelCli::KorelNamespace {
namespace {

using HostOptions = std::unordered_map<std::string, std::string>;

bool HasAnySetting(const InputPtr& input) {
  bool hasAny = input->HasParameter("path");
  for (const TraceNumber& number : kTraceNumbers) hasAny |= input->HasParameter(number.option);
  return hasAny;
}

/// Text of the number for the host, which knows switches by words.
std::string HostText(const TraceNumber& number, std::int64_t value) {
  if (number.isSwitch) return value != 0 ? "true" : "false";
  return std::to_string(value);
}

/// The file's content, made of what it held and of what the options change. `hostOptions` takes
/// what was changed, sizes in the unit they were typed in.
std::string Compose(const InputPtr& input, const TraceValues& present, HostOptions& hostOptions) {
  const bool isReset = input->GetParameterBool("reset");
  std::string directory = isReset ? "" : TraceDirectory(present, kTraceVolume, "");
  if (input->HasParameter("path")) directory = input->GetParameter("path");
  if (isReset || input->HasParameter("path")) hostOptions["normal_path"] = directory;

  std::string text = StrCat(kTraceVolume, "=\"", directory, "\"\n");
  for (const TraceNumber& number : kTraceNumbers) {
    const bool isGiven = input->HasParameter(number.option);
    std::int64_t value = isReset ? number.standard : TraceValue(present, number);
    if (isGiven) {
      value = number.isSwitch ? std::int64_t{input->GetParameterBool(number.option)}
                              : input->GetParameterInt(number.option);
    }
    if (number.hostOption != nullptr && (isReset || isGiven)) {
      hostOptions[number.hostOption] = HostText(number, value);
    }
    text += StrCat(number.key, "=", std::to_string(value), "\n");
  }
  return text;
}

/// A daemon that runs takes the new settings; one that does not run finds them when it starts.
void RestartDaemon() {
  const int status = KorelUtil::KorelExec(kTraceDaemon, "status", false, true, false);
  if (status < 0) throw KorelCtlException("Failed to check koreltraced status.");
  if (status == 3) return;
  const int restarted = KorelUtil::KorelExec(kTraceDaemon, "restart", false, true, false);
  if (restarted != 0) {
    throw KorelCtlException(
        StrCat("Failed to restart koreltraced: ", std::to_string(restarted), "; "));
  }
}

Parameter Files(const char* name, const char* shortName, const char* description) {
  return {
      .name = name, .shortName = shortName, .type = ParameterType::Int, .description = description};
}

}  // namespace

KorelTraceSet::KorelTraceSet() {
  SetDescription("Configure Korel trace. Please note: This command is not thread safe.");
}

std::shared_ptr<InputSpec> KorelTraceSet::GetInputSpecInternal() {
  const auto megabytes = IntRange(1, 4095);
  const auto size = [&](const char* name, const char* shortName, const char* description) {
    Parameter parameter = Files(name, shortName, description);
    parameter.constraint = megabytes;
    return parameter;
  };
  return Inputs(
      {{.name = "path", .shortName = "p", .description = "Path to store Korel trace files."},
       Files("numfiles", "f", "Log file rotation for Korel trace files."),
       Files("domobjnumfiles", "d", "Log file rotation for Korel trace DOM object files."),
       Files("urgentnumfiles", "u", "Log file rotation for Korel trace urgent files."),
       Files("lsom-num-files", "", "Log file rotation for Korel trace LSOM files."),
       Files("lsom-verbose-num-files", "", "Log file rotation for Korel trace LSOM Verbose files."),
       size("size", "s", "Maximum size of Korel trace files in MB."),
       size("domobjsize", "", "Maximum size of Korel DOM object trace files in MB."),
       size("urgentsize", "", "Maximum size of Korel urgent trace files in MB."),
       size("lsom-size", "", "Maximum size of Korel LSOM trace files in MB."),
       size("lsom-verbose-size", "", "Maximum size of Korel LSOM trace verbose files in MB."),
       {.name = "logtosyslog",
        .shortName = "l",
        .type = ParameterType::Bool,
        .description = "Boolean value to enable or disable logging urgent traces to syslog."},
       {.name = "reset",
        .shortName = "r",
        .type = ParameterType::Bool,
        .description = "When set to true, reset defaults for Korel trace files."}});
}

void KorelTraceSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const bool hasReset = input->HasParameter("reset");
  const bool hasSetting = HasAnySetting(input);
  if (hasReset && hasSetting) {
    return Refuse(output, "reset cannot be used with other options.");
  }
  if (!hasReset && !hasSetting) return Refuse(output, "No options provided.");
  const auto failure = FailureOf([&] {
    const auto present = ReadTraceConfig();
    if (!present) return Refuse(output, "Error opening Korel Trace Config File for reading.");
    HostOptions hostOptions;
    const std::string text = Compose(input, *present, hostOptions);
    KorelUtil::SetTracedLogOptions(hostOptions);
    if (!WriteTraceConfig(text)) {
      return Refuse(output, "Error opening Korel Trace Config File for writing.");
    }
    RestartDaemon();
    Succeed(output);
  });
  if (failure) Refuse(output, *failure + " Refer /var/log/syslog.log for details.");
}

}  // namespace OstrelCli::KorelNamespace
