#include "korel/datastore/Commands.h"

namespace OstrelCli::KorelNamespace {

DatastoreList::DatastoreList() {
  SetDescription("List datastores in the Korel cluster.");
  Show(*this, *GetOutputStructure(), "simple", "Datastore");
}

std::shared_ptr<MetaStruct> DatastoreList::GetOutputStructure() {
  return Structure("KorelDatastoreList", {{"Datastore UUID", MetaType::String},
                                          {"User Friendly Name", MetaType::String},
                                          {"Default", MetaType::Bool},
                                          {"Remote", MetaType::Bool},
                                          {"Cluster UUID", MetaType::String}});
}

std::shared_ptr<OutputSpec> DatastoreList::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void DatastoreList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  // "add" is what scripts match on.
  Attempt(output, "Unable to add datastore: ", [&] {
    const auto list = ListOf(GetOutputStructure());
    const HostControl host;
    for (const auto& datastore : host->GetDatastores()) {
      const auto row = GetOutputStructure();
      row->SetField("Datastore UUID", datastore->GetUuid());
      row->SetField("User Friendly Name", datastore->GetName());
      row->SetField("Default", datastore->IsDefault());
      row->SetField("Remote", datastore->IsRemote(host->GetClusterUuid()));
      row->SetField("Cluster UUID", datastore->GetClusterUuid());
      list->Add(row);
    }
    output->SetRootObject(list);
  });
}

}  // namespace OstrelCli::KorelNamespace
