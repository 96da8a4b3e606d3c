#pragma once

#include <string>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// The lab as a graph in the DOT language, line by line: a frame for each fault domain, in it its
/// hosts with role and state, disk groups and how full their disks are; a node for each cluster
/// with its datastores; arrows from hosts to their clusters and to their unicast agents, and from
/// clusters to those whose datastores they mount.
std::vector<std::string> Picture(Store& store);

}  // namespace lab
