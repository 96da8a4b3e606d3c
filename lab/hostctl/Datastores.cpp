#include "lab/model/Datastores.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"

namespace lab {

using Tovrin::Korel::KorelDatastore;

void LabKorelInfo::AddDatastore(const KorelDatastore& datastore) {
  Call("AddDatastore", lab::AddDatastore, datastore);
}

void LabKorelInfo::RemoveDatastore(const std::string& uuid) {
  Call("RemoveDatastore", lab::RemoveDatastore, uuid);
}

void LabKorelInfo::ClearDatastores() { Call("ClearDatastores", lab::ClearDatastores); }

std::vector<std::shared_ptr<KorelDatastore>> LabKorelInfo::GetDatastores() {
  return Call("GetDatastores", KnownDatastores);
}

std::string LabKorelInfo::GetDatastoreName(const std::string& uuid) {
  return Call("GetDatastoreName", DatastoreName, uuid);
}

void LabKorelInfo::SetDatastoreName(const std::string& uuid, const std::string& newName) {
  Call("SetDatastoreName", RenameDatastore, uuid, newName);
}

}  // namespace lab
