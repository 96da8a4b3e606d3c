// Adds two commands: "hello language list" answers with records, "hello say" takes one of them.
#include <array>

#include "platform/autocli/Declare.h"

namespace {

using namespace Corvex::Declare;

struct Language {
  const char* tag;
  const char* name;
  const char* greeting;
};
constexpr std::array<Language, 3> kLanguages = {{
    {"en", "English", "Hello"},
    {"it", "Italian", "Ciao"},
    {"sw", "Swahili", "Jambo"},
}};

class HelloSay : public Corvex::AutoCli::Command {
 public:
  static std::shared_ptr<HelloSay> New() { return std::make_shared<HelloSay>(); }
  HelloSay() { SetDescription("Greet somebody."); }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    std::vector<ParameterConstraint::EnumValue> tags;
    for (const Language& language : kLanguages) tags.push_back({language.tag, language.name});
    return Inputs({
        {.name = "language",
         .shortName = "l",
         .required = true,
         .constraint = StringEnum(tags),
         .description = "The language to do it in:\n%FULLENUM%"},
        {.name = "name",
         .shortName = "n",
         .type = ParameterType::StringList,
         .description = "Whom to greet."},
        {.name = "from", .description = "Who greets."},
        {.name = "times",
         .type = ParameterType::Int,
         .constraint = IntRange(1, 9),
         .description = "How often, %ENUM%. Once without it."},
        {.name = "comma",
         .type = ParameterType::Bool,
         .description = "Put a comma before each name. Done unless this is false."},
        {.name = "loud", .type = ParameterType::Flag, .description = "Add an exclamation mark."},
    });
  }

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
    return Answers(MetaString::New());
  }

  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override {
    std::vector<std::string> names;
    input->GetParameterList("name", names);
    const bool hasComma = !input->HasParameter("comma") || input->GetParameterBool("comma");
    std::string text = GreetingIn(input->GetParameter("language"));
    for (const std::string& name : names) {
      if (name.empty()) return Refuse(output, "the name \"\" is empty");
      text += (hasComma ? ", " : " ") + name;
    }
    if (input->HasParameter("from")) text += " from " + input->GetParameter("from");
    if (input->IsFlagSet("loud")) text += "!";
    std::string all = text;
    for (std::int64_t i = 1; i < input->GetParameterInt("times"); ++i) all += " " + text;
    output->SetRootObject(MetaString::New(all));
  }

  static std::string GreetingIn(const std::string& tag) {
    for (const Language& language : kLanguages) {
      if (language.tag == tag) return language.greeting;
    }
    return "";
  }
};

class HelloLanguageList : public Corvex::AutoCli::Command {
 public:
  static std::shared_ptr<HelloLanguageList> New() { return std::make_shared<HelloLanguageList>(); }
  HelloLanguageList() {
    SetDescription("List the languages.");
    Show(*this, *Record(), "table");
  }

 private:
  static std::shared_ptr<MetaStruct> Record() {
    return Structure("Language", {{"Tag", MetaType::String}, {"Name", MetaType::String}});
  }

  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return Inputs(); }
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Record())); }

  void ExecuteInternal(const InputPtr&, const OutputPtr& output) override {
    const auto list = ListOf(Record());
    for (const Language& language : kLanguages) {
      const auto record = MetaStruct::New("Language");
      record->SetField("Tag", language.tag);
      record->SetField("Name", language.name);
      list->Add(record);
    }
    output->SetRootObject(list);
  }
};

}  // namespace

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root) {
  RegisterTop(*root, {"hello",
                      "Greetings in some languages",
                      {{"language", "Languages", {Verb<HelloLanguageList>("list")}},
                       Verb<HelloSay>("say")}});
}
