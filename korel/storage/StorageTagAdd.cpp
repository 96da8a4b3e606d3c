#include "korel/storage/Commands.h"
#include "korel/storage/Tags.h"

namespace OstrelCli::KorelNamespace {

StorageTagAdd::StorageTagAdd() { SetDescription("Add a Korel storage tag."); }

std::shared_ptr<InputSpec> StorageTagAdd::GetInputSpecInternal() {
  return TagInputs("Tag to be added to disk. Supported tags are %ENUM%.",
                   "Name of the disk to which the tag should be added.");
}

void StorageTagAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  ApplyTag(input, output, "Unable to add tag to disk: ", &KorelInfo::AddKorelDirectTag,
           &KorelInfo::AddCapacityFlashTag);
}

}  // namespace OstrelCli::KorelNamespace
