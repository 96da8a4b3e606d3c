#include "korel/datastore/Commands.h"
#include "korel/datastore/DatastoreName.h"

namespace OstrelCli::KorelNamespace {

DatastoreNameGet::DatastoreNameGet() {
  SetDescription("Get Korel datastore name.");
  SetDefaultOutputFormatter("simple");
}

std::shared_ptr<MetaStruct> DatastoreNameGet::GetOutputStructure() {
  return Structure("DatastoreName", {{"Name", MetaType::String}});
}

std::shared_ptr<InputSpec> DatastoreNameGet::GetInputSpecInternal() {
  return Inputs({{.name = "uuid", .shortName = "u", .description = kDatastoreToName}});
}

std::shared_ptr<OutputSpec> DatastoreNameGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void DatastoreNameGet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const std::string uuid = input->GetParameter("uuid");
  Attempt(output, "Unable to get Korel datastore name: ", [&] {
    const HostControl host;
    const auto answer = GetOutputStructure();
    answer->SetField("Name", host->GetDatastoreName(uuid));
    output->SetRootObject(answer);
  });
}

}  // namespace OstrelCli::KorelNamespace
