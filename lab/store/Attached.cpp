#include "lab/store/Attached.h"

#include <SQLiteCpp/Database.h>

#include "lab/base/Text.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/Session.h"

namespace lab {
namespace {

/// As it stands in the name of a file by which SQLite opens it.
std::string Encoded(const std::string& path) {
  std::string encoded;
  for (const char c : path) {
    if (c == '%' || c == '?' || c == '#') {
      encoded += Tovrin::Misc::StrPrintf("%%%02X", static_cast<unsigned>(c));
    } else {
      encoded += c;
    }
  }
  return encoded;
}

}  // namespace

Attached::Attached(Store& store, const std::string& path) : store_(store) {
  Execute(store_, "ATTACH ? AS other", "file:" + Encoded(path) + "?mode=ro");
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

}  // namespace lab
