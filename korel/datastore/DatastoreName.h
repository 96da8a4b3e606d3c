#pragma once

namespace OstrelCli::KorelNamespace {

inline constexpr const char* kDatastoreToName =
    "UUID of the datastore, in the form \"nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn\" where n are hexadecimal digits. If not specified, the default datastore is assumed.";

}  // namespace OstrelCli::KorelNamespace
