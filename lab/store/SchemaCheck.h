#pragma once

#include <map>
#include <string>

#include "lab/store/Store.h"

namespace lab {

/// Tables and indexes of a schema: the SQL that made each, by its name.
using SchemaTexts = std::map<std::string, std::string>;

/// What a lab of this version holds.
const SchemaTexts& CurrentSchema();
/// What a lab of that older version holds.
SchemaTexts SchemaOfVersion(int version);
/// The statements that make it.
std::string ScriptOfVersion(int version);

/// Within a transaction: throws UnusableLab, naming it, when the file holds anything that the
/// schema does not, or lacks or has otherwise what it does.
void CheckSchema(Store& store, const SchemaTexts& schema);

/// Within a transaction: makes the tables and indexes of this version, and marks the file.
void MakeSchema(Store& store);

}  // namespace lab
