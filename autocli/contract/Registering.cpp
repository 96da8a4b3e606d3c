#include "autocli/contract/Registering.h"

#include <fmt/format.h>

namespace autocli {

using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;

namespace {

/// A node's number is its plug-in's place here, counted from 1.
std::vector<std::string> origins;
Registering* current = nullptr;

}  // namespace

Registering::Registering(std::string plugin, const Namespace& root) : root_(root) {
  origins.push_back(std::move(plugin));
  current = this;
}

Registering::~Registering() { current = nullptr; }

bool Registering::IsRoot(const Namespace& space) {
  return current != nullptr && &current->root_ == &space;
}

std::uint32_t Registering::Current() {
  return current == nullptr ? 0 : static_cast<std::uint32_t>(origins.size());
}

void Registering::NoteClash(const NamespaceNode& there) {
  const std::string& origin = OriginOf(there);
  const std::string whose = origin.empty() ? "" : fmt::format(" from \"{}\"", origin);
  current->clashes_.push_back(fmt::format("\"{}\" is there already{}", PathOf(there), whose));
}

const std::string& OriginOf(const NamespaceNode& node) {
  static const std::string none;
  return node.GetOrigin() == 0 ? none : origins[node.GetOrigin() - 1];
}

std::string PathOf(const NamespaceNode& node) {
  std::string path = node.GetName();
  for (auto above = node.GetParent(); above && !above->GetName().empty();
       above = above->GetParent()) {
    path = above->GetName() + " " + path;
  }
  return path;
}

}  // namespace autocli
