#include "autocli/contract/Registering.h"
#include "autocli/contract/Shape.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::Declare::ListOf;
using Corvex::Declare::Structure;
using testing::ElementsAre;

/// What std::invalid_argument says that `action` throws; empty when it throws none.
std::string Refusal(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::invalid_argument& exception) {
    return exception.what();
  }
  return "";
}

TEST(TreeTest, RefusedNodesLeaveTheTreeAsItWas) {
  const auto root = Namespace::New();
  const auto child = Namespace::New();
  root->RegisterNamespaceNode(child, "child");
  const auto fresh = Namespace::New();
  const auto refusal = [&](const std::shared_ptr<Namespace>& node, const char* name) {
    return Refusal([&] { root->RegisterNamespaceNode(node, name); });
  };
  EXPECT_EQ(refusal(nullptr, "x"), "there is no node to register as \"x\"");
  EXPECT_EQ(refusal(fresh, nullptr), "\"\" is no name for a node");
  EXPECT_EQ(refusal(fresh, "-x"), "\"-x\" is no name for a node");
  EXPECT_EQ(refusal(fresh, "\xc3\xa9"), "\"\xc3\xa9\" is no name for a node");
  EXPECT_EQ(refusal(fresh, "child"), "name \"child\" is taken");
  EXPECT_EQ(refusal(child, "again"), "the node for \"again\" has a parent already");
  EXPECT_EQ(Refusal([&] { child->RegisterNamespaceNode(root, "up"); }), "\"up\" would hold itself");
  EXPECT_EQ(root->GetChildren().size(), 1U);
  EXPECT_EQ(fresh->GetParent(), nullptr);
  EXPECT_EQ(child->GetName(), "child");
  EXPECT_EQ(child->GetParent(), root);
}

/// The paths of all commands below the namespace, each with what stands in for its plug-in.
Words Commands(const Namespace& space) {
  Words paths;
  for (const auto& child : space.GetChildren()) {
    if (child->GetType() == Corvex::AutoCli::NamespaceNode::NodeType::Command) {
      paths.push_back(PathOf(*child) + " " + OriginOf(*child));
    } else {
      std::ranges::move(Commands(static_cast<const Namespace&>(*child)), std::back_inserter(paths));
    }
  }
  return paths;
}

TEST(TreeTest, NamespacesOfTwoPluginsBecomeOne) {
  const auto root = Namespace::New();
  const auto verb = [](const char* name) { return Declare::Verb<TestCommand>(name); };
  {
    const Registering registering("a.so", *root);
    Declare::RegisterTop(*root, {"disk", "Disks", {{"tag", "Tags", {verb("add")}}, verb("list")}});
    EXPECT_EQ(Refusal([&] { root->RegisterNamespaceNode(Namespace::New(), "disk"); }),
              "name \"disk\" is taken")
        << "a plug-in's own slip";
    EXPECT_EQ(Refusal([&] { root->RegisterNamespaceNode(TestCommand::New(), "korel"); }),
              "the command \"korel\" needs a namespace above it");
  }
  const auto late = Namespace::New();
  {
    const Registering registering("b.so", *root);
    Declare::RegisterTop(
        *root,
        {"disk", "Disks", {{"tag", "", {verb("add"), verb("get")}}, {"list", "", {verb("x")}}}});
    auto disk = std::static_pointer_cast<Namespace>(root->GetNamespaceNode("disk"));
    disk->RegisterNamespaceNode(late, "tag");
    late->RegisterNamespaceNode(TestCommand::New(), "set");
    EXPECT_THAT(registering.GetClashes(),
                ElementsAre("\"disk tag add\" is there already from \"a.so\"",
                            "\"disk list\" is there already from \"a.so\""));
  }
  EXPECT_TRUE(late->HasNamespaceNode("add")) << "the handle stands for the whole";
  EXPECT_THAT(Commands(*root), ElementsAre("disk tag add a.so", "disk tag get b.so",
                                           "disk tag set b.so", "disk list a.so"));
}

TEST(TreeTest, ValuesRefuseWhatCannotWork) {
  const char* const nothing = nullptr;
  const auto disk = DiskPrototype();
  const auto disks = ListOf(disk);
  const auto inner = Structure("Inner", {});
  inner->SetField("Disks", disks);
  EXPECT_NE(Refusal([&] { disks->Add("text"); }), "");
  EXPECT_NE(Refusal([&] { disks->Add(MetaStruct::New("Other")); }), "");
  EXPECT_NE(Refusal([] { Texts({})->Add(DiskPrototype()); }), "");
  EXPECT_NE(Refusal([&] { Texts({})->Add(nothing); }), "");
  EXPECT_NE(Refusal([&] { disk->SetField("Name", nothing); }), "");
  EXPECT_NE(Refusal([&] { MetaString::New(nothing); }), "");
  EXPECT_NE(Refusal([] { MetaList::New(MetaType::Struct); }), "");
  EXPECT_EQ(Refusal([&] { inner->SetField("Self", inner); }),
            "field \"Self\" would hold the record that it is in");
  EXPECT_EQ(Refusal([&] { disk->SetField("Disks", inner); }),
            "field \"Disks\" would hold the record that it is in")
      << "as the prototype of a list in it";
  const auto holder = DiskPrototype();
  const auto list = ListOf(DiskPrototype());
  holder->SetField("Tags", list);
  EXPECT_EQ(Refusal([&] { list->Add(holder); }), "the record holds the list it is for");
}

// Conversions that would make a value into what it is not.
template <typename Value, typename From>
constexpr bool kIsMadeOf = requires(From from) {
  Value::New(from);
};
template <typename From>
constexpr bool kIsField = requires(MetaStruct record, From from) {
  record.SetField("F", from);
};
static_assert(kIsMadeOf<MetaBool, bool> && kIsMadeOf<MetaBool, std::optional<bool>> &&
              kIsMadeOf<MetaInt, int> && kIsMadeOf<MetaInt, std::optional<std::uint16_t>> &&
              kIsMadeOf<MetaInt, std::uint32_t> && kIsMadeOf<MetaString, std::string>);
static_assert(!kIsMadeOf<MetaBool, const char*> && !kIsMadeOf<MetaBool, char[6]> &&
              !kIsMadeOf<MetaBool, int> && !kIsMadeOf<MetaBool, void*> &&
              !kIsMadeOf<MetaInt, double> && !kIsMadeOf<MetaInt, bool> &&
              !kIsMadeOf<MetaInt, std::uint64_t> && !kIsMadeOf<MetaInt, std::optional<double>> &&
              !kIsMadeOf<MetaString, std::nullptr_t>);
static_assert(kIsField<std::uint32_t> && kIsField<short> && kIsField<char[3]> &&
              kIsField<std::shared_ptr<MetaList>>);
static_assert(!kIsField<void*> && !kIsField<int*> && !kIsField<double> && !kIsField<std::size_t> &&
              !kIsField<std::optional<bool>> && !kIsField<std::nullptr_t>);
TEST(TreeTest, ResultsAreHeldAgainstTheDeclaredShape) {
  const auto declared = Structure("T", {{"A", MetaType::Int}, {"B", MetaType::List}});
  const auto inner = Structure("T", {{"A", MetaType::Int}});
  inner->SetField("B", ListOf(declared));
  const auto mixed = ListOf(declared);
  mixed->Add(declared);
  mixed->Add(MetaStruct::New("T"));
  const std::tuple<MetaObjectPtr, MetaObjectPtr, const char*> cases[] = {
      {declared, declared, ""},
      {ListOf(declared), ListOf(MetaStruct::New("T")), ""},
      {MetaBool::New(), MetaString::New("true"), "string instead of bool"},
      {declared, MetaStruct::New("U"), "struct \"U\" instead of \"T\""},
      {declared, Structure("T", {{"B", MetaType::List}, {"A", MetaType::Int}}),
       "field \"B\" instead of \"A\""},
      {declared, Structure("T", {{"A", MetaType::String}, {"B", MetaType::List}}),
       "field \"A\": string instead of int"},
      {declared, inner, "field \"B\": list of struct instead of string"},
      {ListOf(declared), mixed, "struct \"T\" with 0 fields instead of 2"},
      {ListOf(declared), ListOf(MetaStruct::New("U")), "list of struct \"U\" instead of \"T\""},
  };
  for (const auto& [expected, actual, difference] : cases) {
    EXPECT_EQ(ShapeDifference(*expected, *actual), difference);
  }
}

}  // namespace
}  // namespace autocli::test
