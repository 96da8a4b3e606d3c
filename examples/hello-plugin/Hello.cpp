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
    return Inputs({{.name = "language",
                    .shortName = "l",
                    .required = true,
                    .constraint = StringEnum(tags),
                    .description = "The language to do it in:\n%FULLENUM%"},
                   {.name = "name", .shortName = "n", .description = "Whom to greet."}});
  }

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
    return Answers(MetaString::New());
  }

  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override {
    if (input->HasParameter("name") && input->GetParameter("name").empty()) {
      return Refuse(output, "the name \"\" is empty");
    }
    for (const Language& language : kLanguages) {
      if (input->GetParameter("language") != language.tag) continue;
      std::string text = language.greeting;
      if (input->HasParameter("name")) text += ", " + input->GetParameter("name");
      output->SetRootObject(MetaString::New(text));
    }
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
