#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/autocli/AutoCli.h"

namespace autocli {

/// While one exists, what is registered belongs to that plug-in, and `root` takes namespaces alone:
/// a command there could have the name of a namespace that another plug-in fills. Only one exists
/// at a time.
class Registering {
 public:
  Registering(std::string plugin, const Corvex::AutoCli::Namespace& root);
  ~Registering();
  Registering(const Registering&) = delete;
  Registering& operator=(const Registering&) = delete;

  /// What was left out because another plug-in has its name, a message each.
  const std::vector<std::string>& GetClashes() const { return clashes_; }

  /// The namespace is the root of what is registered.
  static bool IsRoot(const Corvex::AutoCli::Namespace& space);
  /// The number of the plug-in that registers; 0 for none.
  static std::uint32_t Current();
  /// A node was left out, for this one has its name.
  static void NoteClash(const Corvex::AutoCli::NamespaceNode& there);

 private:
  const Corvex::AutoCli::Namespace& root_;
  std::vector<std::string> clashes_;
};

/// The plug-in that registered the node, as it was named; empty for none.
const std::string& OriginOf(const Corvex::AutoCli::NamespaceNode& node);

/// The names from the root to the node, joined by blanks.
std::string PathOf(const Corvex::AutoCli::NamespaceNode& node);

}  // namespace autocli
