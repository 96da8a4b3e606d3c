#include "lab/store/Store.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <fcntl.h>
#include <unistd.h>

#include <new>
#include <stdexcept>
#include <utility>

#include "lab/base/Text.h"
#include "lab/store/LabFile.h"
#include "lab/store/Memory.h"
#include "lab/store/Patience.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/SchemaCheck.h"
#include "lab/store/Session.h"

namespace lab {
namespace {

/// Waits for programs that know nothing of turns. SQLite's own waiting grows to 100 ms a time.
int WaitForOthers(void*, int) noexcept {
  constexpr int kPollUs = 1000;
  try {
    if (PatienceLeft() <= Waiting::zero()) return 0;
    const WaitingTime waiting;
    usleep(kPollUs);
    return 1;
  } catch (const std::exception&) {
    return 0;
  }
}

/// Not closed when the process ends: that drops its locks, and there is nothing else to be done.
std::unique_ptr<Store>& ProcessStore() {
  static auto& store = *new std::unique_ptr<Store>;
  return store;
}

/// The library counts no memory, which takes a lock for each piece of it, and leaves one connection
/// to one thread.
int OpenFlags() {
  static const int configured = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  static_cast<void>(configured);
  return SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI |
         (MayChange() ? SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE : SQLite::OPEN_READONLY);
}

const std::string& Prepared(const std::string& path) {
  if (MayChange()) MakeDirectoryOf(path);
  return path;
}

/// Opens the file only when the process has not: closing it would drop SQLite's locks.
std::string MissingPartOf(const std::string& path) {
  const auto& store = ProcessStore();
  if (store && store->GetPath() == path) return MissingPart(store->GetTurnstile().GetFile());
  const File file = OpenFile(path, O_RDONLY);
  return file.IsOpen() ? MissingPart(file) : "";
}

[[noreturn]] void ThrowActionable(const SQLite::Exception& failure, const std::string& path) {
  const std::string lab = "the lab " + Quoted(path);
  switch (failure.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      FailBusy(path);
    case SQLITE_FULL:
      Fail("no space is left for ", lab);
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
      Fail("cannot write ", lab, " or its directory: ", failure.what());
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB: {
      const std::string missing = MissingPartOf(path);
      throw UnusableLab(path, lab + (missing.empty() ? " is damaged" : " was cut: it " + missing));
    }
    default:
      Fail(lab, " cannot be used: ", failure.what());
  }
}

}  // namespace

Store::Store(std::string path) : path_(std::move(path)), turnstile_(Prepared(path_)) {
  PatienceLeft();  // refuses what KOREL_LAB_WAIT cannot say before it is needed
  HoldsLab(turnstile_.GetFile(), path_);
  database_ = std::make_unique<SQLite::Database>(path_, OpenFlags());
  sqlite3* handle = database_->getHandle();
  sqlite3_busy_handler(handle, WaitForOthers, nullptr);
  for (const auto& [setting, value] : {std::pair(SQLITE_DBCONFIG_ENABLE_FKEY, 1),
                                       {SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
                                       {SQLITE_DBCONFIG_DEFENSIVE, 1}}) {
    sqlite3_db_config(handle, setting, value, nullptr);
  }
  // A cache of 64 MB: a lab of ten thousand hosts changed as a whole does not spill.
  database_->exec(
      "PRAGMA synchronous = EXTRA; PRAGMA cell_size_check = ON; PRAGMA cache_size = -65536");
}

Store::~Store() = default;

Store& Store::ForProcess() {
  std::string path = LabPath();
  std::unique_ptr<Store>& store = ProcessStore();
  if (!store || store->GetPath() != path || !store->turnstile_.IsInPlace()) {
    store.reset();
    store = std::make_unique<Store>(std::move(path));
  }
  return *store;
}

void Store::CloseForProcess() { ProcessStore().reset(); }

std::unique_ptr<SQLite::Statement> Store::Take(const std::string& sql) {
  if (auto kept = idle_.extract(sql)) return std::move(kept.mapped());
  return std::make_unique<SQLite::Statement>(*database_, sql);
}

void Store::Keep(std::unique_ptr<SQLite::Statement> statement) noexcept {
  try {
    statement->tryReset();
    statement->clearBindings();
    const std::string& sql = statement->getQuery();
    idle_.insert_or_assign(sql, std::move(statement));
  } catch (const std::exception&) {
    // It is prepared again the next time.
  }
}

int Store::GetVersion() {
  Query row(*this, "PRAGMA user_version");
  row.Next();
  return static_cast<int>(row.Number(0));
}

bool Store::IsCurrent() {
  // Read each time: another process may have changed it since.
  const int version = GetVersion();
  if (version > kSchemaVersion) {
    throw UnusableLab(path_, "the lab " + Quoted(path_) + " is of version " +
                                 std::to_string(version) + ", newer than this program knows (" +
                                 std::to_string(kSchemaVersion) + ")");
  }
  if (version < kSchemaVersion) return false;
  Query row(*this, "PRAGMA schema_version");
  row.Next();
  const int schema = static_cast<int>(row.Number(0));
  if (schema == checkedSchema_) return true;
  // Again: what a journal brought back counts.
  HoldsLab(turnstile_.GetFile(), path_);
  CheckSchema(*this, CurrentSchema());
  if (const std::string missing = MissingPart(turnstile_.GetFile()); !missing.empty()) {
    throw UnusableLab(path_, "the lab " + Quoted(path_) + " was cut: it " + missing);
  }
  checkedSchema_ = schema;
  return true;
}

std::int64_t Store::GetFirstEntry(const std::string& command) const {
  return command == command_ ? firstEntry_ : 0;
}

void Store::SetFirstEntry(const std::string& command, std::int64_t entry) {
  command_ = command;
  firstEntry_ = entry;
}

Transaction::Transaction(Store& store, Access access)
    : store_(store),
      isLoose_(access == Access::ChangeLoosely),
      turn_(store.GetTurnstile(), access) {
  const bool isForChanges = access != Access::Read && MayChange();
  if (isLoose_) SetReferencesChecked(false);
  try {
    Execute(store_, isForChanges ? "BEGIN IMMEDIATE" : "BEGIN");
    if (isForChanges) session_ = BeginRecording(store_);
  } catch (...) {
    TakeDown();
    throw;
  }
}

Transaction::~Transaction() { TakeDown(); }

void Transaction::TakeDown() {
  if (session_ != nullptr) sqlite3session_delete(session_);
  if (!isEnded_) store_.GetDatabase().tryExec("ROLLBACK");
  if (isLoose_) SetReferencesChecked(true);
}

void Transaction::Commit(const std::function<Origin()>& origin) {
  if (session_ == nullptr) {
    const int state = sqlite3_txn_state(store_.GetDatabase().getHandle(), nullptr);
    if (state == SQLITE_TXN_WRITE) throw std::logic_error("a transaction for reading has written");
    return End("ROLLBACK");
  }
  const Changeset changes = EndRecording(std::exchange(session_, nullptr));
  // Without a change a rollback is the same, and takes fewer of the file's locks.
  if (changes.empty()) return End("ROLLBACK");
  Remember(store_, origin(), &changes);
  End("COMMIT");
}

void Transaction::CommitUnremembered() {
  if (session_ != nullptr) EndRecording(std::exchange(session_, nullptr));
  End("COMMIT");
}

void Transaction::CommitFirst(const Origin& origin) {
  if (session_ != nullptr) EndRecording(std::exchange(session_, nullptr));
  Remember(store_, origin, nullptr);
  End("COMMIT");
}

void Transaction::End(const char* statement) {
  Execute(store_, statement);
  isEnded_ = true;
}

/// Only between transactions does SQLite take this.
void Transaction::SetReferencesChecked(bool isChecked) {
  sqlite3_db_config(store_.GetDatabase().getHandle(), SQLITE_DBCONFIG_ENABLE_FKEY,
                    isChecked ? 1 : 0, nullptr);
}

void ThrowActionable(const std::exception_ptr& failure) { ThrowActionable(failure, LabPath()); }

void ThrowActionable(const std::exception_ptr& failure, const std::string& path) {
  try {
    std::rethrow_exception(failure);
  } catch (const Tovrin::Lib::Korel::KorelCtlException&) {
    throw;
  } catch (const SQLite::Exception& known) {
    ThrowActionable(known, path);
  } catch (const std::bad_alloc&) {
    Fail("out of memory");
  } catch (const std::exception& known) {
    Fail("the host control library failed: ", known.what());
  }
}

}  // namespace lab
