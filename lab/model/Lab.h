#pragma once

#include <string>
#include <type_traits>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// A transaction on the process's lab, which is made, with one standard host "host1", when the
/// file is new. Files that the hosts of before have left to a lab that was made anew are removed.
class LabTransaction {
 public:
  LabTransaction();

  Store& GetStore() { return store_; }
  void Commit() { transaction_.Commit(); }

 private:
  Store& store_;
  Transaction transaction_;
};

/// Runs `work(Store&)` in one transaction and returns what it returns. Every exception leaves as a
/// KorelCtlException, and then nothing has changed.
template <typename Work>
std::invoke_result_t<Work, Store&> InLab(const Work& work) {
  try {
    LabTransaction transaction;
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

/// Makes the process's lab with these hosts. An existing one is refused, or made anew by `force`;
/// with `force` a file that is no usable lab is renamed to "FILE.old" first.
/// Throws KorelCtlException; an existing lab is then as it was, or, when only the files of the
/// hosts of before are still in the way, made anew by whoever uses it next.
void InitLab(const std::vector<HostInventory>& hosts, bool force);

}  // namespace lab
