#pragma once

#include <string>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// Where the trace daemon's init script is found under a host's root.
inline constexpr const char* kTraceDaemon = "/etc/init.d/koreltraced";

/// Where the roots of all hosts are: "FILE.root".
std::string RootsOf(const Store& store);
/// Where the host's own root directory is: "FILE.root/HOST".
std::string HostRoot(const Store& store, const Host& host);

/// Lays out the root of the host of that name, unless it exists, as a fresh host has it: the trace
/// daemon runs, with its defaults. What is missing under a root that exists stays missing. Within a
/// transaction, since only one process may do it. Throws an exception that names the place when it
/// cannot be written.
void LayOutRoot(const Store& store, const std::string& hostName);
/// Removes the roots of all hosts, also those that a lab of before has left there.
void RemoveRoots(const Store& store);

/// The place of an absolute path under the host's root, which is laid out when missing: hosts of
/// older labs have none. Throws KorelCtlException when the path is relative or has a ".." in it.
std::string PlaceUnderRoot(const Store& store, const Host& host, const std::string& path);

}  // namespace lab
