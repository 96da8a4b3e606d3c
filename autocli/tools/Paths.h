#pragma once

#include <string>
#include <vector>

namespace autocli {

/// What a path that was begun can become on this machine: the entries of its folder whose names
/// begin like that, in byte order; a folder ends in "/". Hidden ones are there when the name begins
/// with a point; "." and ".." never are.
std::vector<std::string> PathsFrom(const std::string& begun, bool onlyFolders);

}  // namespace autocli
