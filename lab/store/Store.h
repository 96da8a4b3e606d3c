#pragma once

#include <exception>
#include <map>
#include <memory>
#include <string>

namespace SQLite {
class Database;
class Statement;
}  // namespace SQLite

namespace lab {

/// What there is in a lab file.
enum class Content {
  Lab,
  NewHosts,  ///< a lab that was made anew, beside files of the hosts of before
  Nothing,
};

/// One open lab file.
class Store {
 public:
  /// Opens the file, and makes it and its directory when missing; nothing is written into it yet.
  /// While nothing may change, only opens it for reading.
  /// Throws KorelCtlException or SQLite::Exception.
  explicit Store(std::string path);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /// The lab at LabPath(), opened at the first call and kept open.
  static Store& ForProcess();
  /// The next ForProcess() opens the file again.
  static void CloseForProcess();

  const std::string& GetPath() const { return path_; }
  SQLite::Database& GetDatabase() { return *database_; }

  /// The statement, prepared, reset and without values. It is the caller's until Keep() takes it
  /// back for the next time: preparing costs more than most statements do.
  std::unique_ptr<SQLite::Statement> Take(const std::string& sql);
  void Keep(std::unique_ptr<SQLite::Statement> statement) noexcept;

  /// The schema's version: 0 for a new file.
  int GetVersion();
  /// Within a transaction: takes the schema to the newest version. Says what was there, and from
  /// then on it is a lab. Throws UnusableLab when the file is newer than this library.
  Content BringUpToDate();
  /// Within a transaction: anything in the file is to change, for its journal was begun.
  bool HasChanged();
  /// Within a transaction: whoever comes next finds NewHosts.
  void NoteNewHosts();

 private:
  std::string path_;
  std::unique_ptr<SQLite::Database> database_;
  std::map<std::string, std::unique_ptr<SQLite::Statement>> idle_;  ///< by their SQL
};

/// A transaction that no other process can come between; undone unless it is committed.
class Transaction {
 public:
  explicit Transaction(Store& store);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void Commit();

 private:
  Store& store_;
  bool isCommitted_ = false;
};

/// Within a catch block: throws what is being handled as a KorelCtlException that a person can act
/// on. The default says what that is where it is caught: a plug-in has a C++ runtime of its own,
/// and only that one knows.
[[noreturn]] void ThrowActionable(const std::exception_ptr& failure = std::current_exception());

}  // namespace lab
