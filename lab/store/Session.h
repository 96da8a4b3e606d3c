#pragma once

// The recording of changes is a part of SQLite that its header shows only when it is asked for.
#define SQLITE_ENABLE_SESSION
#define SQLITE_ENABLE_PREUPDATE_HOOK
#include <sqlite3.h>

#include "lab/store/Changeset.h"

/// SQLite's session extension, for this folder alone.
namespace lab {

/// Throws, for ThrowActionable() to say what it is, unless the result is one of success.
void CheckResult(int result);
/// The bytes that the extension made, which are freed; throws as CheckResult.
Changeset TakeChangeset(int result, int size, void* bytes);

/// Within a transaction: starts recording what changes the lab's own tables. Statements are
/// prepared after this, or they may change rows without being seen.
sqlite3_session* BeginRecording(Store& store);
/// What has changed since; the recording is over.
Changeset EndRecording(sqlite3_session* session);

}  // namespace lab
