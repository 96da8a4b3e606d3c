#include "lab/store/Session.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "lab/store/Schema.h"

namespace lab {
namespace {

int IsRecorded(void*, const char* table) {
  return std::any_of(kTables.begin(), kTables.end(),
                     [&](const SchemaObject& own) { return std::string_view(own.name) == table; })
             ? 1
             : 0;
}

}  // namespace

void CheckResult(int result) {
  if (result != SQLITE_OK && result != SQLITE_DONE) {
    throw SQLite::Exception(sqlite3_errstr(result), result);
  }
}

Changeset TakeChangeset(int result, int size, void* bytes) {
  const std::unique_ptr<void, decltype(&sqlite3_free)> owned(bytes, sqlite3_free);
  CheckResult(result);
  return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

sqlite3_session* BeginRecording(Store& store) {
  sqlite3_session* session = nullptr;
  CheckResult(sqlite3session_create(store.GetDatabase().getHandle(), "main", &session));
  sqlite3session_table_filter(session, IsRecorded, nullptr);
  if (const int failure = sqlite3session_attach(session, nullptr); failure != SQLITE_OK) {
    sqlite3session_delete(session);
    CheckResult(failure);
  }
  return session;
}

Changeset EndRecording(sqlite3_session* session) {
  int size = 0;
  void* bytes = nullptr;
  const int result = sqlite3session_changeset(session, &size, &bytes);
  sqlite3session_delete(session);
  return TakeChangeset(result, size, bytes);
}

}  // namespace lab
