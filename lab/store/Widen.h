#pragma once

#include "lab/store/Changeset.h"

namespace lab {

/// The changes of an older lab, whose tables lacked some of the last columns that they have now, as
/// changes of these tables: the columns have their defaults. Throws KorelCtlException when the
/// bytes are no changeset of a lab's tables.
Changeset Widened(Store& store, const Changeset& changes);

}  // namespace lab
