#pragma once

// The recording of changes is a part of SQLite that its header shows only when it is asked for.
#define SQLITE_ENABLE_SESSION
#define SQLITE_ENABLE_PREUPDATE_HOOK
#include <sqlite3.h>
