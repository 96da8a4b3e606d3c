// A plug-in whose one command makes a list as long as it is told, for timing the formatters.
#include "platform/autocli/Declare.h"

namespace {

using namespace Corvex::Declare;

class RecordsList : public Corvex::AutoCli::Command {
 public:
  static std::shared_ptr<RecordsList> New() { return std::make_shared<RecordsList>(); }
  RecordsList() { Show(*this, *Record(), "table"); }

 private:
  static std::shared_ptr<MetaStruct> Record() {
    return Structure("Record", {{"Device", MetaType::String},
                                {"Display Name", MetaType::String},
                                {"Is SSD", MetaType::Bool},
                                {"UUID", MetaType::String},
                                {"Group", MetaType::String},
                                {"Size", MetaType::Int},
                                {"Mounted", MetaType::Bool},
                                {"Checksum", MetaType::String},
                                {"Port", MetaType::Int},
                                {"Time", MetaType::String}});
  }

  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "count", .type = ParameterType::Int, .required = true}});
  }

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Record())); }

  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override {
    const auto list = ListOf(Record());
    for (std::int64_t i = 0; i < input->GetParameterInt("count"); ++i) {
      const auto number = std::to_string(i);
      const auto row = MetaStruct::New("Record");
      row->SetField("Device", "mpx.dkhba0:C0:T" + number + ":L0");
      row->SetField("Display Name", "disk_" + number);
      row->SetField("Is SSD", i % 3 == 0);
      row->SetField("UUID", "5291022a-ad03-df90-dd0f-b9f980cc005e");
      row->SetField("Group", "52afa1de-4240-d5d6-17f9-8af1ec8509e5");
      row->SetField("Size", i * 1000);
      row->SetField("Mounted", i % 2 == 0);
      row->SetField("Checksum", "9f86d081884c7d65");
      row->SetField("Port", 12321);
      row->SetField("Time", "2026-01-31T23:59:59Z");
      list->Add(row);
    }
    output->SetRootObject(list);
  }
};

}  // namespace

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root) {
  RegisterTop(*root, {"records", "Long lists", {Verb<RecordsList>("list")}});
}
