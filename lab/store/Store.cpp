#include "lab/store/Store.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>
#include <unistd.h>

#include <new>

#include "lab/common/Text.h"
#include "lab/store/LabFile.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"

namespace lab {
namespace {

constexpr int kBusyTimeoutUs = 10'000'000;
constexpr int kPollUs = 250;

/// Asks for the lock again and again. The library's own waiting grows to 100 ms a time, and in a
/// crowd the lock is then free, for a fraction of one, only when nobody looks.
int WaitForTurn(void*, int count) {
  if (count >= kBusyTimeoutUs / kPollUs) return 0;
  usleep(kPollUs);
  return 1;
}

constexpr int kNewestVersion = static_cast<int>(kMigrations.size());
// Programs that do not know of it refuse the file, rather than take the old hosts' files for the
// new hosts'.
constexpr int kVersionWithNewHosts = -kNewestVersion;

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
  return SQLITE_OPEN_NOMUTEX |
         (MayChange() ? SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE : SQLite::OPEN_READONLY);
}

void SetVersion(Store& store, int version) {
  store.GetDatabase().exec("PRAGMA user_version = " + std::to_string(version));
}

[[noreturn]] void ThrowActionable(const SQLite::Exception& failure, const std::string& path) {
  const std::string lab = "the lab " + Quoted(path);
  switch (failure.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      Fail(lab, " is in use by another process; try again");
    case SQLITE_FULL:
      Fail("no space is left for ", lab);
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
      Fail("cannot write ", lab, " or its directory: ", failure.what());
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      throw UnusableLab(lab + " is damaged" + HowToReplace(path));
    default:
      Fail(lab, " cannot be used: ", failure.what());
  }
}

}  // namespace

Store::Store(std::string path) : path_(std::move(path)) {
  if (MayChange()) MakeDirectoryOf(path_);
  HoldsLab(path_);
  database_ = std::make_unique<SQLite::Database>(path_, OpenFlags());
  sqlite3_busy_handler(database_->getHandle(), WaitForTurn, nullptr);
  sqlite3_db_config(database_->getHandle(), SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr);
  database_->exec("PRAGMA synchronous = EXTRA");
}

Store::~Store() = default;

Store& Store::ForProcess() {
  std::string path = LabPath();
  std::unique_ptr<Store>& store = ProcessStore();
  if (!store || store->GetPath() != path) store = std::make_unique<Store>(std::move(path));
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
    // It is prepared anew the next time.
  }
}

int Store::GetVersion() {
  Rows rows = Query(*this, "PRAGMA user_version");
  rows.executeStep();
  return rows.getColumn(0).getInt();
}

Content Store::BringUpToDate() {
  // Read each time: another process may have made the lab anew since.
  const int version = GetVersion();
  if (version == kNewestVersion) return Content::Lab;
  const bool hasNewHosts = version == kVersionWithNewHosts;
  if ((version > kNewestVersion || version < 0) && !hasNewHosts) {
    throw UnusableLab("the lab " + Quoted(path_) + " is of version " + std::to_string(version) +
                      ", newer than this program knows (" + std::to_string(kNewestVersion) + ")" +
                      HowToReplace(path_));
  }
  for (int from = hasNewHosts ? kNewestVersion : version; from < kNewestVersion; ++from) {
    database_->exec(kMigrations.at(static_cast<std::size_t>(from)));
  }
  database_->exec("PRAGMA application_id = " + std::to_string(kApplicationId));
  SetVersion(*this, kNewestVersion);
  return hasNewHosts ? Content::NewHosts : version == 0 ? Content::Nothing : Content::Lab;
}

void Store::NoteNewHosts() { SetVersion(*this, kVersionWithNewHosts); }

bool Store::HasChanged() {
  sqlite3_file* journal = nullptr;
  const int known = sqlite3_file_control(
      database_->getHandle(), "main", SQLITE_FCNTL_JOURNAL_POINTER, static_cast<void*>(&journal));
  return known != SQLITE_OK || journal->pMethods != nullptr;
}

Transaction::Transaction(Store& store) : store_(store) {
  Execute(store_, MayChange() ? "BEGIN IMMEDIATE" : "BEGIN");
}

Transaction::~Transaction() {
  if (!isCommitted_) store_.GetDatabase().tryExec("ROLLBACK");
}

void Transaction::Commit() {
  // Without a change a rollback is the same, and takes fewer of the file's locks.
  Execute(store_, store_.HasChanged() ? "COMMIT" : "ROLLBACK");
  isCommitted_ = true;
}

void ThrowActionable(const std::exception_ptr& failure) {
  try {
    std::rethrow_exception(failure);
  } catch (const Tovrin::Lib::Korel::KorelCtlException&) {
    throw;
  } catch (const SQLite::Exception& known) {
    ThrowActionable(known, LabPath());
  } catch (const std::bad_alloc&) {
    Fail("out of memory");
  } catch (const std::exception& known) {
    Fail("the host control library failed: ", known.what());
  }
}

}  // namespace lab
