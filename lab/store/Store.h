#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "lab/store/Turnstile.h"

namespace SQLite {
class Database;
class Statement;
}  // namespace SQLite

struct sqlite3_session;

namespace lab {

/// One open lab file.
class Store {
 public:
  /// Opens the file, and makes it and its directory when missing; nothing is written into it yet.
  /// While nothing may change, only opens it for reading.
  /// Throws KorelCtlException, or what ThrowActionable makes one of.
  explicit Store(std::string path);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /// The lab at LabPath(), opened at the first call and kept open as long as the path is its.
  static Store& ForProcess();
  /// The next ForProcess() opens the file again.
  static void CloseForProcess();

  const std::string& GetPath() const { return path_; }
  /// For this folder alone.
  SQLite::Database& GetDatabase() { return *database_; }
  Turnstile& GetTurnstile() { return turnstile_; }

  /// The statement, prepared, reset and without values. It is the caller's until Keep() takes it
  /// back for the next time: preparing costs more than most statements do.
  std::unique_ptr<SQLite::Statement> Take(const std::string& sql);
  void Keep(std::unique_ptr<SQLite::Statement> statement) noexcept;

  /// The schema's version: 0 for a new file.
  int GetVersion();
  /// Within a transaction: the file holds a lab of the newest version, and just that. False when it
  /// is new or older. Throws UnusableLab when it is newer, or holds or lacks anything else.
  bool IsCurrent();

  /// The first entry of the memory that the present command of this process has made, by the
  /// command's number; 0 when it has made none.
  std::int64_t GetFirstEntry(const std::string& command) const;
  void SetFirstEntry(const std::string& command, std::int64_t entry);

 private:
  std::string path_;
  Turnstile turnstile_;  ///< before the database: closing its file drops the other's locks
  std::unique_ptr<SQLite::Database> database_;
  std::map<std::string, std::unique_ptr<SQLite::Statement>> idle_;  ///< by their SQL
  int checkedSchema_ = -1;  ///< SQLite's count of changes of the schema that was found right
  std::string command_;
  std::int64_t firstEntry_ = 0;
};

/// Where a change comes from, for the memory.
struct Origin {
  std::string host;
  std::string operation;  ///< empty when the command line says it all
};

/// A transaction, when its turn has come; undone unless it is committed. What it changes is
/// recorded for the memory.
class Transaction {
 public:
  Transaction(Store& store, Access access);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  /// Keeps what was changed, with an entry in the memory. Without a change nothing is written, and
  /// nobody asked where it comes from.
  void Commit(const std::function<Origin()>& origin);
  /// Keeps what stands beside the lab's own rows (Schema.h), without an entry. What was changed in
  /// those is kept, too: the caller has changed nothing there.
  void CommitUnremembered();
  /// Keeps it with an entry that cannot be taken back: the making of a lab.
  void CommitFirst(const Origin& origin);

 private:
  class Turn {
   public:
    Turn(Turnstile& turnstile, Access access) : turnstile_(turnstile) { turnstile_.Enter(access); }
    ~Turn() { turnstile_.Leave(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    Turnstile& turnstile_;
  };

  void End(const char* statement);
  void TakeDown();
  void SetReferencesChecked(bool isChecked);

  Store& store_;
  bool isLoose_;
  Turn turn_;
  sqlite3_session* session_ = nullptr;
  bool isEnded_ = false;
};

/// Within a catch block: throws what is being handled as a KorelCtlException that a person can act
/// on. The default says what that is where it is caught: a plug-in has a C++ runtime of its own,
/// and only that one knows.
[[noreturn]] void ThrowActionable(const std::exception_ptr& failure = std::current_exception());
/// The same, of the lab with that path.
[[noreturn]] void ThrowActionable(const std::exception_ptr& failure, const std::string& path);

}  // namespace lab
