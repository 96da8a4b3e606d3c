#pragma once

#include <functional>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// A transaction on the process's lab, which is made, with one standard host "host1", when the
/// file is new, and brought up to date when it is of an older version.
class LabTransaction {
 public:
  explicit LabTransaction(Access access, Store& store = Store::ForProcess());

  Store& GetStore() { return store_; }
  /// Gives up what was done, and waits for another turn.
  void BeginAgain(Access access);
  /// Keeps what was changed. In the memory stands the host that the process stands on, and the
  /// operation when the command line does not say it all; it is asked for when it is needed.
  void Commit(const std::function<std::string()>& operation = [] { return std::string(); });
  /// Keeps what was counted, which no memory keeps, and ends the transaction.
  void CommitUnremembered();

 private:
  Store& store_;
  std::optional<Transaction> transaction_;
};

/// Runs `work(Store&)` in one transaction and returns what it returns. Every exception leaves as a
/// KorelCtlException, and then nothing has changed.
template <typename Work>
std::invoke_result_t<Work, Store&> InLab(Access access, const Work& work) {
  try {
    LabTransaction transaction(access);
    if constexpr (std::is_void_v<std::invoke_result_t<Work, Store&>>) {
      work(transaction.GetStore());
      transaction.Commit();
    } else {
      auto result = work(transaction.GetStore());
      transaction.Commit();
      return result;
    }
  } catch (...) {
    ThrowActionable();
  }
}

/// Changes the lab, alone with it.
template <typename Work>
std::invoke_result_t<Work, Store&> ChangeLab(const Work& work) {
  return InLab(Access::Change, work);
}

/// Reads the lab, at the same time as others that read.
template <typename Work>
std::invoke_result_t<Work, Store&> ReadLab(const Work& work) {
  return InLab(Access::Read, work);
}

/// Makes the process's lab with these hosts. An existing one is refused, or replaced by `force`,
/// which its memory keeps; a file that is no usable lab is then set aside first (LabFile.h).
/// Throws KorelCtlException; an existing lab is then as it was.
void InitLab(const std::vector<HostInventory>& hosts, bool force);

}  // namespace lab
