#include <gtest/gtest.h>

#include <cstring>
#include <typeinfo>

#include "korel/Tree.h"
#include "korel/cluster/Commands.h"
#include "korel/datastore/Commands.h"
#include "korel/network/Commands.h"
#include "korel/resync/Commands.h"
#include "korel/storage/Commands.h"
#include "korel/storagepool/Commands.h"
#include "korel/trace/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Corvex::AutoCli::Namespace;

TEST(Tree, FillsANamespaceThatIsThereWithTheClassesThemselves) {
  auto root = Namespace::New();
  const auto there = Namespace::New();
  there->SetDescription("something else");
  root->RegisterNamespaceNode(there, "korel");
  RegisterTop(*root, Tree());
  EXPECT_EQ(root->GetChildren().size(), 1U);
  EXPECT_EQ(there->GetDescription(), "Ostrel Korel commands");
  const auto cluster = std::dynamic_pointer_cast<Namespace>(there->GetNamespaceNode("cluster"));
  const auto& restore = *cluster->GetNamespaceNode("restore");
  EXPECT_EQ(typeid(restore), typeid(ClusterRestore));
}

TEST(Tree, RefusesACommandInItsPlace) {
  auto root = Namespace::New();
  root->RegisterNamespaceNode(ClusterNew::New(), "korel");
  EXPECT_THROW(RegisterTop(*root, Tree()), std::logic_error);
}

/// Where the operation stands in the table of virtual ones: a pointer to it holds one and the
/// distance in bytes.
template <typename Operation>
std::size_t PlaceOf(Operation operation) {
  std::size_t held = 0;
  std::memcpy(&held, &operation, sizeof(held));
  return (held - 1) / sizeof(void*);
}

template <template <typename> typename Form>
struct Probe final : Form<Probe<Form>> {
  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return Inputs(); }
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return nullptr; }
  void ExecuteInternal(const InputPtr&, const OutputPtr&) override {}

  static std::vector<std::size_t> Places() {
    return {PlaceOf(&Probe::GetInputSpecInternal), PlaceOf(&Probe::GetOutputSpecInternal),
            PlaceOf(&Probe::ExecuteInternal)};
  }
};

TEST(CommandClass, HasItsOperationsAfterTheTwoEntriesOfTheDestructor) {
  const std::vector<std::size_t> places = {2, 3, 4};
  EXPECT_EQ(Probe<VirtualCommand>::Places(), places);
  EXPECT_EQ(Probe<PlainCommand>::Places(), places);
}

// A virtual base cannot be cast down from, so this tells the two forms of the base apart.
template <typename Class>
constexpr bool kIsPlain = requires(Command* command) {
  static_cast<Class*>(command);
};
template <typename... Classes>
constexpr bool kArePlain = (kIsPlain<Classes> && ...);
static_assert(
    kArePlain<DatastoreAdd, DatastoreClear, StoragePoolRemove, StoragePoolList, NetworkSecurityList,
              KorelMaxSet, ClusterList, ClusterPreferredFaultDomainList, ResyncBandwidthGet>);
template <typename... Classes>
constexpr bool kAreVirtual = !(kIsPlain<Classes> || ...);
static_assert(kAreVirtual<ClusterJoin, ClusterRestore, ClusterGet, ClusterPreferredFaultDomainGet,
                          DatastoreRemove, DatastoreList, StoragePoolAdd, NetworkIpAdd, NetworkList,
                          NetworkSecurityGet, ResyncThrottleGet, StorageList, KorelTraceSet>);

template <typename Class>
constexpr bool kIsMadeByNewAlone = !std::is_default_constructible_v<Class>;
static_assert(kIsMadeByNewAlone<DatastoreAdd> && kIsMadeByNewAlone<ClusterJoin> &&
              !std::is_constructible_v<ClusterRestore, bool>);

}  // namespace
}  // namespace OstrelCli::KorelNamespace
