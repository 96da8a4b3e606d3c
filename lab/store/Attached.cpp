#include "lab/store/Attached.h"

#include <SQLiteCpp/Database.h>

#include "lab/base/Text.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/Session.h"

namespace lab {
namespace {

/// The name of a file by which SQLite opens it, for reading alone.
std::string ReadOnly(const std::string& path) {
  const auto isKept = [](char c) { return c != '%' && c != '?' && c != '#'; };
  return "file:" + PercentEncoded(path, isKept) + "?mode=ro";
}

}  // namespace

Attached::Attached(Store& store, const std::string& path) : store_(store) {
  Execute(store_, "ATTACH ? AS other", ReadOnly(path));
}

Attached::~Attached() { store_.GetDatabase().tryExec("DETACH other"); }

Changeset Attached::Difference() const {
  sqlite3_session* session = BeginRecording(store_);
  for (const auto& [name, sql] : kTables) {
    const int result = sqlite3session_diff(session, "other", name, nullptr);
    if (result == SQLITE_OK) continue;
    EndRecording(session);
    CheckResult(result);
  }
  return EndRecording(session);
}

void Attached::TakeFaultCalls() const {
  RunScript(store_,
            "DELETE FROM faultCalls; INSERT INTO faultCalls SELECT * FROM other.faultCalls");
}

}  // namespace lab
