#include "korel/storage/Tags.h"

namespace OstrelCli::KorelNamespace {

std::shared_ptr<InputSpec> TagInputs(const char* tagDescription, const char* diskDescription) {
  return Inputs(
      {{.name = "tag",
        .shortName = "t",
        .required = true,
        .constraint = StringEnum({{kTagCapacityFlash, "Tag for capacity flash."},
                                  {kTagKorelDirect, "Tag for Korel Direct disks."}}),
        .description = tagDescription},
       {.name = "disk", .shortName = "d", .required = true, .description = diskDescription}});
}

void ApplyTag(const InputPtr& input, const OutputPtr& output, const char* prefix,
              TagOperation korelDirect, TagOperation capacityFlash) {
  const std::string disk = input->GetParameter("disk");
  const std::string tag = input->GetParameter("tag");
  Attempt(output, prefix, [&] {
    const HostControl host;
    if (tag == kTagKorelDirect) {
      std::invoke(korelDirect, *host, disk);
    } else if (tag == kTagCapacityFlash) {
      std::invoke(capacityFlash, *host, disk);
    } else {
      throw KorelCtlException("Unsupported tag name: " + tag);
    }
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
