#include "autocli/tree/Shape.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::CallSpec::Input;
using Corvex::CallSpec::Output;
using Corvex::Declare::ListOf;
using Corvex::Declare::Structure;

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
  const struct {
    std::shared_ptr<Corvex::AutoCli::NamespaceNode> node;
    const char* name;
    const char* message;
  } cases[] = {
      {nullptr, "x", "there is no node to register as \"x\""},
      {fresh, nullptr, "\"\" is no name for a node"},
      {fresh, "", "\"\" is no name for a node"},
      {fresh, "-x", "\"-x\" is no name for a node"},
      {fresh, "a b", "\"a b\" is no name for a node"},
      {fresh, "a_b", "\"a_b\" is no name for a node"},
      {fresh, "\xc3\xa9", "\"\xc3\xa9\" is no name for a node"},
      {fresh, "child", "name \"child\" is taken"},
      {child, "again", "the node for \"again\" has a parent already"},
      {root, "self", "\"self\" would hold itself"},
  };
  for (const auto& refused : cases) {
    EXPECT_EQ(Refusal([&] { root->RegisterNamespaceNode(refused.node, refused.name); }),
              refused.message);
  }
  EXPECT_EQ(Refusal([&] { child->RegisterNamespaceNode(root, "up"); }), "\"up\" would hold itself");
  EXPECT_EQ(root->GetChildren().size(), 1U);
  EXPECT_EQ(fresh->GetName(), "");
  EXPECT_EQ(fresh->GetParent(), nullptr);
}

TEST(TreeTest, NodesKnowTheirPlace) {
  DiskTree tree;
  EXPECT_EQ(tree.list->GetName(), "list");
  EXPECT_EQ(tree.list->GetParent(), tree.root->GetNamespaceNode("disk"));
  EXPECT_EQ(tree.list->GetThis(), tree.list);
  EXPECT_EQ(tree.root->GetNamespaceNode("list"), nullptr);
  TestCommand unowned;
  EXPECT_THROW(unowned.GetThis(), std::bad_weak_ptr);
}

TEST(TreeTest, SpecificationsRefuseWhatCannotWork) {
  const auto parameter = [](const char* name, const char* letter) {
    auto made = ParameterSpec::New(name, ParameterType::String);
    made->SetShortName(letter);
    return made;
  };
  const auto spec = InputSpec::New();
  spec->AddParameter(parameter("name", "n"));
  spec->AddParameter(parameter("other", ""));
  spec->AddParameter(parameter("third", ""));
  EXPECT_NE(Refusal([&] { spec->AddParameter(nullptr); }), "");
  EXPECT_NE(Refusal([&] { spec->AddParameter(parameter("", "")); }), "");
  EXPECT_NE(Refusal([&] { spec->AddParameter(parameter("long", "lo")); }), "");
  EXPECT_EQ(Refusal([&] { spec->AddParameter(parameter("name", "")); }),
            "parameter \"name\" is declared twice");
  EXPECT_EQ(Refusal([&] { spec->AddParameter(parameter("node", "n")); }),
            "short name \"n\" is declared twice");
  EXPECT_EQ(spec->GetParameters().size(), 3U);

  const auto disks = ListOf(DiskPrototype());
  EXPECT_NE(Refusal([&] { disks->Add("text"); }), "");
  EXPECT_NE(Refusal([&] { disks->Add(std::shared_ptr<MetaStruct>()); }), "");
  EXPECT_NE(Refusal([&] { disks->Add(MetaStruct::New("Other")); }), "");
  EXPECT_NE(Refusal([&] { MetaList::New(MetaType::String)->Add(DiskPrototype()); }), "");
  EXPECT_NE(Refusal([] { MetaList::New(MetaType::Int); }), "");
  EXPECT_NE(Refusal([] { MetaList::New(MetaType::Struct); }), "");
  EXPECT_NE(Refusal([] { MetaList::New(MetaType::String, DiskPrototype()); }), "");
  EXPECT_NE(Refusal([] { DiskPrototype()->SetField("Name", MetaObjectPtr()); }), "");
  EXPECT_TRUE(disks->GetElements().empty());
}

TEST(TreeTest, FieldsKeepTheirPlaceWhenSetAgain) {
  const auto disk = Disk("a", 1, false, {});
  disk->SetField("Name", "b");
  disk->SetField("New", 7);
  ASSERT_EQ(disk->GetFields().size(), 5U);
  EXPECT_EQ(disk->GetFields()[0].name, "Name");
  const auto* name = dynamic_cast<const MetaString*>(disk->FindField("Name"));
  ASSERT_NE(name, nullptr) << "a literal is a text, no boolean";
  EXPECT_EQ(name->GetValue(), "b");
  EXPECT_EQ(disk->FindField("name"), nullptr);
}

TEST(TreeTest, ValuesAreReadAsTheTypeThatTheyAre) {
  const auto input = Input::New();
  input->SetParameter("size", std::int64_t{4});
  EXPECT_TRUE(input->HasParameter("size"));
  EXPECT_EQ(input->GetParameterInt("size"), 4);
  EXPECT_THROW(input->GetParameter("size"), std::logic_error);
  EXPECT_THROW(input->IsFlagSet("size"), std::logic_error);
  EXPECT_EQ(input->GetParameterInt("absent"), 0);
  Words values = {"old"};
  input->GetParameterList("absent", values);
  EXPECT_THAT(values, testing::IsEmpty());
}

TEST(TreeTest, ResultsAreHeldAgainstTheDeclaredShape) {
  const auto swapped = Structure("Disk", {{"Size", MetaType::Int},
                                          {"Name", MetaType::String},
                                          {"Fast", MetaType::Bool},
                                          {"Tags", MetaType::List}});
  const auto kind = Disk("a", 1, true, {});
  kind->SetField("Size", "one");
  const auto inner = DiskPrototype();
  inner->SetField("Tags", ListOf(DiskPrototype()));
  const auto more = DiskPrototype();
  more->SetField("More", 1);
  const auto mixed = ListOf(DiskPrototype());
  mixed->Add(Disk("a", 1, true, {}));
  mixed->Add(MetaStruct::New("Disk"));
  const struct {
    MetaObjectPtr declared;
    MetaObjectPtr actual;
    const char* difference;
  } cases[] = {
      {DiskPrototype(), DiskPrototype(), ""},
      {DiskPrototype(), Disk("a", 1, true, {"t"}), ""},
      {ListOf(DiskPrototype()), ListOf(MetaStruct::New("Disk")), ""},
      {MetaBool::New(), MetaString::New("true"), "string instead of bool"},
      {DiskPrototype(), MetaStruct::New("Drive"), "struct \"Drive\" instead of \"Disk\""},
      {DiskPrototype(), swapped, "field \"Size\" instead of \"Name\""},
      {DiskPrototype(), kind, "field \"Size\": string instead of int"},
      {DiskPrototype(), inner, "field \"Tags\": list of struct instead of string"},
      {DiskPrototype(), more, "struct \"Disk\" with 5 fields instead of 4"},
      {ListOf(DiskPrototype()), mixed, "struct \"Disk\" with 0 fields instead of 4"},
      {ListOf(DiskPrototype()), ListOf(MetaStruct::New("Drive")),
       "list of struct \"Drive\" instead of \"Disk\""},
  };
  for (const auto& [declared, actual, difference] : cases) {
    EXPECT_EQ(ShapeDifference(*declared, *actual), difference);
  }
}

}  // namespace
}  // namespace autocli::test
