#include "platform/autocli/AutoCli.h"

#include <algorithm>
#include <stdexcept>

#include "autocli/contract/Shape.h"

namespace Corvex::AutoCli {

namespace {

bool IsLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool IsPlainWord(const std::string& name) {
  return !name.empty() && IsLetterOrDigit(name.front()) &&
         std::ranges::all_of(name, [](char c) { return IsLetterOrDigit(c) || c == '-'; });
}

}  // namespace

std::shared_ptr<Namespace> Namespace::New() {
  return std::shared_ptr<Namespace>(new Namespace);  // the constructor is not for make_shared
}

bool Namespace::HasNamespaceNode(const std::string& name) const {
  return GetNamespaceNode(name) != nullptr;
}

std::shared_ptr<NamespaceNode> Namespace::GetNamespaceNode(const std::string& name) const {
  const auto child = std::ranges::find(children_, name, &NamespaceNode::name_);
  return child == children_.end() ? nullptr : *child;
}

void Namespace::RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, const char* name) {
  std::string word = name == nullptr ? "" : name;
  if (!node) throw std::invalid_argument("there is no node to register as \"" + word + "\"");
  if (!IsPlainWord(word)) throw std::invalid_argument("\"" + word + "\" is no name for a node");
  if (HasNamespaceNode(word)) throw std::invalid_argument("name \"" + word + "\" is taken");
  if (node->GetParent()) {
    throw std::invalid_argument("the node for \"" + word + "\" has a parent already");
  }
  const auto self = std::static_pointer_cast<Namespace>(shared_from_this());
  for (auto above = self; above; above = above->GetParent()) {
    if (above == node) throw std::invalid_argument("\"" + word + "\" would hold itself");
  }
  NamespaceNode& added = *node;
  children_.push_back(std::move(node));
  added.name_ = std::move(word);
  added.parent_ = self;
}

std::shared_ptr<CommandSpec> CommandSpec::GetThis() {
  return std::static_pointer_cast<CommandSpec>(shared_from_this());
}

void Command::Execute(const std::shared_ptr<CallSpec::Input>& input,
                      const std::shared_ptr<CallSpec::Output>& output) {
  ExecuteInternal(input, output);
  const auto& result = output->GetRootObject();
  if (!result) {
    if (!output->GetErrorMessages().empty()) return;
    throw std::logic_error("the command gave neither a result nor an error");
  }
  const auto spec = GetOutputSpec();
  if (!spec || !spec->GetRootObject()) throw std::logic_error("the command declares no result");
  const std::string difference = autocli::ShapeDifference(*spec->GetRootObject(), *result);
  if (!difference.empty()) {
    throw std::logic_error("the result is not of the declared shape: " + difference);
  }
}

}  // namespace Corvex::AutoCli
