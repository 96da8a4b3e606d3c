// One of a crowd: adds one to a number of the lab, again and again, reading it first. Without the
// transaction others come in between, and what they added is lost.
//   crowd with|without TIMES
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "lab/store/Query.h"

int main(int, char** words) {
  lab::Store& store = lab::Store::ForProcess();
  for (int times = std::atoi(words[2]); times > 0; --times) {
    std::optional<lab::Transaction> transaction;
    if (std::string(words[1]) == "with") transaction.emplace(store, lab::Access::Change);
    const int rate = std::stoi(lab::Texts(store, "SELECT resyncRate FROM hosts").front());
    usleep(1000);  // Time enough for somebody else.
    lab::Execute(store, "UPDATE hosts SET resyncRate = ?", rate + 1);
    if (transaction) transaction->Commit([]() -> lab::Origin { return {"crowd", "counts"}; });
    transaction.reset();
    usleep(1000);  // A command would be starting.
  }
}
