#pragma once

#include <string>
#include <vector>

#include "platform/autocli/MetaObj.h"

namespace autocli {

/// The word that people read for a kind of value: "bool", "int", "string", "struct", "list".
const char* KindName(Corvex::MetaObj::MetaType type);

/// The prototype of the records in a result like `prototype`: itself, or the elements of the list.
/// Null when the result holds no records.
const Corvex::MetaObj::MetaStruct* RecordOf(const Corvex::MetaObj::MetaObject& prototype);

/// The names of the fields of those records, in order; none without records.
std::vector<std::string> FieldNames(const Corvex::MetaObj::MetaObject& prototype);

/// How `actual` differs from the declared shape, in words that name the place; empty when it does
/// not. Compared are kinds, record types, field names and their order, element types; an unset
/// value is of its shape.
std::string ShapeDifference(const Corvex::MetaObj::MetaObject& declared,
                            const Corvex::MetaObj::MetaObject& actual);

}  // namespace autocli
