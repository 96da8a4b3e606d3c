#include "korel/frame/EvacuationMode.h"
#include "korel/storage/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

constexpr int kTrimMetadata = 0;
constexpr int kTrimFull = 1;
constexpr int kTrimNone = 2;

int TrimCode(const InputPtr& input) {
  if (!KorelUtil::IsKorelRebuildTrimFssEnabled()) return kTrimNone;
  // It was not declared when the host could not be asked then.
  const std::string trim = input->HasParameter("trim") ? input->GetParameter("trim") : "";
  if (trim == "noTrim") return kTrimNone;
  return trim == "fullDisk" ? kTrimFull : kTrimMetadata;
}

std::string Outcome(const std::vector<std::string>& skippedDisks) {
  if (skippedDisks.empty()) return "Rebuild succeeded.";
  std::string text = "Rebuild succeeded. Ignored the unhealthy disk:";
  for (const std::string& disk : skippedDisks) text += " " + disk;
  return text;
}

std::vector<Parameter> Parameters() {
  return {
      {.name = "ssd",
       .shortName = "s",
       .description =
           "Specify a disk group's fronting SSD to rebuild the SSD and each backing HDD for use by Korel.E.g.: mpx.dkhba2:C0:T1:L0"},
      {.name = "uuid",
       .shortName = "u",
       .description =
           "Specify a Korel UUID of the fronting SSD to rebuild for use by Korel.E.g.: 5291022a-ad03-df90-dd0f-b9f980cc005e"},
      {.name = "evacuation-mode",
       .shortName = "m",
       .constraint = StringEnum(
           {{"noAction", "Do not move KOREL data out of the disk before removing it"},
            {"ensureObjectAccessibility",
             "Evacuate data from the disk to ensure object accessibility in the KOREL cluster, before removing the disk"},
            {"evacuateAllData", "Evacuate all data from the disk before removing it"}}),
       .description =
           "Specify an action to take upon removing the disk group from KOREL (default noAction). Allowed values are: %FULLENUM%"}};
}

Parameter TrimParameter() {
  return {
      .name = "trim",
      .shortName = "t",
      .constraint = StringEnum({{"noTrim", "Skip the trim operation."},
                                {"metaDataOnly", "Only trim the metadata region in the disks."},
                                {"fullDisk", "Trim the full disks."}}),
      .description =
          "Specify a trim region for all disks in the diskgroup (default is metaDataOnly). Allowed values are: %FULLENUM%"};
}

}  // namespace

StorageDiskgroupRebuild::StorageDiskgroupRebuild() {
  SetDescription("Rebuild a disk group.");
  SetDefaultOutputFormatter("simple");
}

std::shared_ptr<InputSpec> StorageDiskgroupRebuild::GetInputSpecInternal() {
  std::vector<Parameter> parameters = Parameters();
  // A host that cannot be asked is reported by the execution, which asks again; help needs none.
  bool hasTrim = false;
  FailureOf([&] { hasTrim = KorelUtil::IsKorelRebuildTrimFssEnabled(); });
  if (hasTrim) parameters.push_back(TrimParameter());
  parameters.push_back(
      {.name = "force", .type = ParameterType::Flag, .description = "Skip unhealthy disks."});
  return Inputs(parameters);
}

std::shared_ptr<OutputSpec> StorageDiskgroupRebuild::GetOutputSpecInternal() {
  return Answers(MetaString::New());
}

void StorageDiskgroupRebuild::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const std::string ssd = input->GetParameter("ssd");
  const std::string uuid = input->GetParameter("uuid");
  if (ssd.empty() == uuid.empty()) {
    return Refuse(output, "Specify only one of --ssd or --uuid.");
  }
  Attempt(output, [&] {
    const HostControl host;
    const std::string mode = CapitalizeMode(input->GetParameter("evacuation-mode"));
    const int trimCode = TrimCode(input);
    const bool force = input->IsFlagSet("force");
    std::vector<std::string> skippedDisks;
    if (!ssd.empty()) {
      host->RebuildDiskGroup(ssd, mode, trimCode, force, skippedDisks);
    } else {
      host->RebuildDiskGroupByUuid(uuid, mode, trimCode, force, skippedDisks);
    }
    output->SetRootObject(MetaString::New(Outcome(skippedDisks)));
  });
}

}  // namespace OstrelCli::KorelNamespace
