#pragma once

#include <vector>

#include "lab/commands/LabCommand.h"
#include "lab/memory/Words.h"

namespace lab {

/// A list of records of the type LabChange, empty.
std::shared_ptr<MetaList> NoChanges();

/// The changes as such a list.
std::shared_ptr<MetaList> ListOfChanges(const std::vector<FieldChange>& changes);

/// A record of the list's type whose fields have these values, in their order.
void AddTexts(MetaList& list, const std::vector<std::optional<std::string>>& values);

}  // namespace lab
