#include <gtest/gtest.h>

#include "korel/cluster/Commands.h"
#include "korel/datastore/Commands.h"
#include "korel/faultdomain/Commands.h"
#include "korel/frame/Tree.h"
#include "korel/maintenancemode/Commands.h"
#include "korel/network/Commands.h"
#include "korel/policy/Commands.h"
#include "korel/resync/Commands.h"
#include "korel/storage/Commands.h"
#include "korel/storagepool/Commands.h"
#include "korel/trace/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;

std::string Outline(const NamespaceNode& node) {
  const auto* space = dynamic_cast<const Namespace*>(&node);
  if (space == nullptr) return node.GetName();
  std::string text = node.GetName() + "(";
  for (const auto& child : space->GetChildren()) {
    text += (text.back() == '(' ? "" : " ") + Outline(*child);
  }
  return text + ")";
}

TEST(Tree, RegistersInOrder) {
  auto root = Namespace::New();
  RegisterTop(*root, Tree());
  EXPECT_EQ(
      Outline(*root),
      "(korel(policy(getdefault setdefault cleardefault) datastore(name(get set) add remove list "
      "clear) storage(add remove list automode(get set) diskgroup(mount unmount rebuild) tag(add "
      "remove)) storagepool(add remove list) network(remove restore clear list ip(add remove "
      "set) ipv4(add remove set) security(set get list)) cluster(join leave get restore new "
      "korelmax(set) list unicastagent(add remove list clear) preferredfaultdomain(get set "
      "list)) trace(set get) maintenancemode(cancel) faultdomain(set get reset) "
      "resync(throttle(set get) bandwidth(get))))");
}

TEST(Tree, FillsANamespaceThatIsThere) {
  auto root = Namespace::New();
  const auto there = Namespace::New();
  there->SetDescription("something else");
  root->RegisterNamespaceNode(there, "korel");
  RegisterTop(*root, Tree());
  EXPECT_EQ(root->GetChildren().size(), 1U);
  EXPECT_EQ(there->GetDescription(), "Ostrel Korel commands");
  EXPECT_TRUE(there->HasNamespaceNode("cluster"));
}

TEST(Tree, RefusesACommandInItsPlace) {
  auto root = Namespace::New();
  root->RegisterNamespaceNode(ClusterNew::New(), "korel");
  EXPECT_THROW(RegisterTop(*root, Tree()), std::logic_error);
}

TEST(Command, KnowsItsOwnHandle) {
  const auto one = ClusterJoin::New();
  const auto other = ClusterJoin::New();
  EXPECT_EQ(one->GetThis(), one);
  EXPECT_EQ(other->GetThis(), other);
  EXPECT_EQ(DatastoreAdd::New()->GetParent(), nullptr);
}

// A virtual base cannot be cast down from, so this tells the two forms of the base apart.
template <typename Class>
constexpr bool kIsPlain = requires(Command* command) {
  static_cast<Class*>(command);
};
static_assert(kIsPlain<DatastoreAdd> && kIsPlain<DatastoreClear>);
static_assert(!kIsPlain<ClusterJoin> && !kIsPlain<DatastoreRemove>);

}  // namespace
}  // namespace OstrelCli::KorelNamespace
