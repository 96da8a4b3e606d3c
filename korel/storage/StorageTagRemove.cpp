#include "korel/storage/Commands.h"
#include "korel/storage/Tags.h"

namespace OstrelCli::KorelNamespace {

StorageTagRemove::StorageTagRemove() { SetDescription("Remove a Korel storage tag."); }

std::shared_ptr<InputSpec> StorageTagRemove::GetInputSpecInternal() {
  return TagInputs("Tag to be removed from disk. Supported tags are %ENUM%.",
                   "Name of the disk from which the tag should be removed.");
}

void StorageTagRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  ApplyTag(input, output, "Unable to remove tag for disk: ", &KorelInfo::RemoveKorelDirectTag,
           &KorelInfo::RemoveCapacityFlashTag);
}

}  // namespace OstrelCli::KorelNamespace
