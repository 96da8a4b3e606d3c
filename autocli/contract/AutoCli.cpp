#include "platform/autocli/AutoCli.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "autocli/contract/Names.h"
#include "autocli/contract/Registering.h"

namespace Corvex::AutoCli {

using autocli::Registering;

std::shared_ptr<Namespace> Namespace::New() {
  return std::shared_ptr<Namespace>(new Namespace);  // the constructor is not for make_shared
}

bool Namespace::HasNamespaceNode(const std::string& name) const {
  return GetNamespaceNode(name) != nullptr;
}

std::shared_ptr<NamespaceNode> Namespace::GetNamespaceNode(const std::string& name) const {
  if (const auto whole = whole_.lock()) return whole->GetNamespaceNode(name);
  const auto child = std::ranges::find(children_, name, &NamespaceNode::name_);
  return child == children_.end() ? nullptr : *child;
}

void Namespace::RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, const char* name) {
  if (const auto whole = whole_.lock()) return whole->RegisterNamespaceNode(std::move(node), name);
  std::string word = name == nullptr ? "" : name;
  if (!node) throw std::invalid_argument("there is no node to register as \"" + word + "\"");
  if (!autocli::IsPlainWord(word)) {
    throw std::invalid_argument("\"" + word + "\" is no name for a node");
  }
  if (node->GetParent()) {
    throw std::invalid_argument("the node for \"" + word + "\" has a parent already");
  }
  if (node->type_ == NodeType::Command && Registering::IsRoot(*this)) {
    throw std::invalid_argument("the command \"" + word + "\" needs a namespace above it");
  }
  const auto self = std::static_pointer_cast<Namespace>(shared_from_this());
  for (auto above = self; above; above = above->GetParent()) {
    if (above == node) throw std::invalid_argument("\"" + word + "\" would hold itself");
  }
  const std::uint32_t origin = Registering::Current();
  if (const auto there = GetNamespaceNode(word)) {
    const bool isOther = origin != 0 && there->origin_ != origin;
    if (!isOther) throw std::invalid_argument("name \"" + word + "\" is taken");
    if (there->type_ != NodeType::Namespace || node->type_ != NodeType::Namespace) {
      return Registering::NoteClash(*there);
    }
    return static_cast<Namespace&>(*there).TakeIn(static_cast<Namespace&>(*node));
  }
  NamespaceNode& added = *node;
  children_.push_back(std::move(node));
  added.name_ = std::move(word);
  added.parent_ = self;
  added.origin_ = origin;
}

void Namespace::TakeIn(Namespace& other) {
  other.whole_ = std::static_pointer_cast<Namespace>(shared_from_this());
  if (description_.empty()) description_ = other.description_;
  for (auto& child : std::exchange(other.children_, {})) {
    child->parent_.reset();
    const std::string name = child->name_;
    RegisterNamespaceNode(std::move(child), name.c_str());
  }
}

std::shared_ptr<CommandSpec> CommandSpec::GetThis() {
  return std::static_pointer_cast<CommandSpec>(shared_from_this());
}

void Command::Execute(const std::shared_ptr<CallSpec::Input>& input,
                      const std::shared_ptr<CallSpec::Output>& output) {
  ExecuteInternal(input, output);
}

}  // namespace Corvex::AutoCli
