#include "lab/model/Datastores.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"

namespace lab {

using Tovrin::Korel::KorelDatastore;

void LabKorelInfo::AddDatastore(const KorelDatastore& datastore) {
  Call("AddDatastore", Arguments(datastore),
       [&](Store& store, const Host& host) { lab::AddDatastore(store, host, datastore); });
}

void LabKorelInfo::RemoveDatastore(const std::string& uuid) {
  Call("RemoveDatastore", Arguments(uuid),
       [&](Store& store, const Host& host) { lab::RemoveDatastore(store, host, uuid); });
}

void LabKorelInfo::ClearDatastores() {
  Call("ClearDatastores", Arguments(),
       [](Store& store, const Host& host) { lab::ClearDatastores(store, host); });
}

std::vector<std::shared_ptr<KorelDatastore>> LabKorelInfo::GetDatastores() {
  return Call("GetDatastores", Arguments(), KnownDatastores);
}

std::string LabKorelInfo::GetDatastoreName(const std::string& uuid) {
  return Call("GetDatastoreName", Arguments(uuid),
              [&](Store& store, const Host& host) { return DatastoreName(store, host, uuid); });
}

void LabKorelInfo::SetDatastoreName(const std::string& uuid, const std::string& newName) {
  Call("SetDatastoreName", Arguments(uuid, newName),
       [&](Store& store, const Host& host) { RenameDatastore(store, host, uuid, newName); });
}

}  // namespace lab
