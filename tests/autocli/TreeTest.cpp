#include "autocli/contract/Shape.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::Declare::Inputs;
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
  const std::tuple<std::shared_ptr<Corvex::AutoCli::NamespaceNode>, const char*, const char*>
      cases[] = {
          {nullptr, "x", "there is no node to register as \"x\""},
          {fresh, nullptr, "\"\" is no name for a node"},
          {fresh, "-x", "\"-x\" is no name for a node"},
          {fresh, "\xc3\xa9", "\"\xc3\xa9\" is no name for a node"},
          {fresh, "child", "name \"child\" is taken"},
          {child, "again", "the node for \"again\" has a parent already"},
      };
  for (const auto& [node, name, message] : cases) {
    EXPECT_EQ(Refusal([&, &node = node, &name = name] { root->RegisterNamespaceNode(node, name); }),
              message);
  }
  EXPECT_EQ(Refusal([&] { child->RegisterNamespaceNode(root, "up"); }), "\"up\" would hold itself");
  EXPECT_EQ(root->GetChildren().size(), 1U);
  EXPECT_EQ(fresh->GetParent(), nullptr);
  EXPECT_EQ(child->GetName(), "child");
  EXPECT_EQ(child->GetParent(), root);
}

TEST(TreeTest, DeclarationsRefuseWhatCannotWork) {
  const auto sameName = [] { Inputs({{.name = "x"}, {.name = "x"}}); };
  const auto sameLetter = [] {
    Inputs({{.name = "x", .shortName = "n"}, {.name = "y", .shortName = "n"}});
  };
  EXPECT_EQ(Refusal(sameName), "parameter \"x\" is declared twice");
  EXPECT_EQ(Refusal(sameLetter), "short name \"n\" is declared twice");
  EXPECT_NE(Refusal([] { ListOf(DiskPrototype())->Add("text"); }), "");
  EXPECT_NE(Refusal([] { ListOf(DiskPrototype())->Add(MetaStruct::New("Other")); }), "");
  EXPECT_NE(Refusal([] { Texts({})->Add(DiskPrototype()); }), "");
}

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
