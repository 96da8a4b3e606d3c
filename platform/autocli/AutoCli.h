#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/autocli/CallSpec.h"

/// The command tree and the helpers that the framework offers to plug-ins.
namespace Corvex::AutoCli {

class Namespace;

/// A named node of the command tree. The parent gives the name when the node is registered.
class NamespaceNode : public std::enable_shared_from_this<NamespaceNode> {
 public:
  enum class NodeType { Namespace, Command };

  virtual ~NamespaceNode() = default;
  NamespaceNode(const NamespaceNode&) = delete;
  NamespaceNode& operator=(const NamespaceNode&) = delete;

  /// Help text; replaces an earlier one.
  void SetDescription(const std::string& description) { description_ = description; }
  const std::string& GetDescription() const { return description_; }
  /// Empty until the node is registered.
  const std::string& GetName() const { return name_; }
  /// Null until the node is registered, and once the parent is gone.
  std::shared_ptr<Namespace> GetParent() const { return parent_.lock(); }
  NodeType GetType() const { return type_; }
  /// The number that the framework gave to the plug-in that registered the node; 0 for none.
  std::uint32_t GetOrigin() const { return origin_; }

 private:
  // The types are these two. Whoever meets one takes its type for its class.
  friend class Namespace;
  friend class CommandSpec;

  explicit NamespaceNode(NodeType type) : type_(type) {}

  NodeType type_;
  std::uint32_t origin_ = 0;
  std::string name_;
  std::string description_;
  std::weak_ptr<Namespace> parent_;
};

/// A node that holds child nodes.
class Namespace final : public NamespaceNode {
 public:
  /// A new, empty namespace.
  static std::shared_ptr<Namespace> New();

  bool HasNamespaceNode(const std::string& name) const;
  /// The child of that name; null when there is none.
  std::shared_ptr<NamespaceNode> GetNamespaceNode(const std::string& name) const;
  /// Attaches `node` under this node and shares its ownership.
  /// When another plug-in has the name: two namespaces become one, which this handle then stands
  /// for; anything else leaves the node out, and the framework tells that of the plug-in.
  /// Throws std::invalid_argument, and changes nothing, when the name is taken otherwise or no
  /// plain word (letters, digits, hyphens, a letter or digit first), when the node is null or has a
  /// parent, or when it is a command and this the framework's root.
  void RegisterNamespaceNode(std::shared_ptr<NamespaceNode> node, const char* name);

  /// In registration order.
  const std::vector<std::shared_ptr<NamespaceNode>>& GetChildren() const { return children_; }

 private:
  Namespace() : NamespaceNode(NodeType::Namespace) {}
  void TakeIn(Namespace& other);

  std::vector<std::shared_ptr<NamespaceNode>> children_;
  std::weak_ptr<Namespace> whole_;  ///< took this one in; nobody has when it is empty
};

/// What runs the execution of a command.
class Dispatcher {
 public:
  /// Runs the command on a line that was parsed against its input specification, and fills
  /// `output`. Passes on what the command throws.
  virtual void Execute(const std::shared_ptr<CallSpec::Input>& input,
                       const std::shared_ptr<CallSpec::Output>& output) = 0;

 protected:
  ~Dispatcher() = default;
};

/// A node that declares the input and the output of a command.
class CommandSpec : public NamespaceNode {
 public:
  /// A fresh specification at each call.
  std::shared_ptr<CallSpec::InputSpec> GetInputSpec() { return GetInputSpecInternal(); }
  std::shared_ptr<CallSpec::OutputSpec> GetOutputSpec() { return GetOutputSpecInternal(); }
  /// The command's own shared handle. Throws std::bad_weak_ptr when nobody owns the command.
  std::shared_ptr<CommandSpec> GetThis();
  /// Never null for a command that can be executed.
  Dispatcher* GetDispatcher() const { return dispatcher_; }

  /// "simple" or "table"; empty when the command leaves it to the framework.
  void SetDefaultOutputFormatter(const std::string& formatter) { formatter_ = formatter; }
  /// One formatter hint; replaces an earlier one of the same key. Keys: "fields:TYPE" (field names
  /// joined by commas, in display order), "header:TYPE" (heading of each record, "%Field%" stands
  /// for that field's value), "units:TYPE.FIELD" (unit written after the value).
  void SetDefaultOutputParameter(const std::string& key, const std::string& value) {
    hints_[key] = value;
  }
  const std::string& GetDefaultOutputFormatter() const { return formatter_; }
  const std::map<std::string, std::string, std::less<>>& GetDefaultOutputParameters() const {
    return hints_;
  }

 protected:
  explicit CommandSpec(Dispatcher* dispatcher)
      : NamespaceNode(NodeType::Command), dispatcher_(dispatcher) {}

 private:
  virtual std::shared_ptr<CallSpec::InputSpec> GetInputSpecInternal() = 0;
  virtual std::shared_ptr<CallSpec::OutputSpec> GetOutputSpecInternal() = 0;

  Dispatcher* dispatcher_;
  std::string formatter_;
  std::map<std::string, std::string, std::less<>> hints_;
};

/// An executable command: the base of every command class.
class Command : public CommandSpec, private Dispatcher {
 public:
  Command() : CommandSpec(this) {}

 private:
  /// Reads `input` and leaves a root object, error messages, or both in `output`.
  virtual void ExecuteInternal(const std::shared_ptr<CallSpec::Input>& input,
                               const std::shared_ptr<CallSpec::Output>& output) = 0;

  void Execute(const std::shared_ptr<CallSpec::Input>& input,
               const std::shared_ptr<CallSpec::Output>& output) final;
};

/// Names a file that gets a line for each command line handed to AutoCli_ShellCmd, run or not, with
/// control characters as "\n". Like the next one it is not read with raised privileges.
inline constexpr const char* kShellRecordVariable = "AUTOCLI_SHELL_RECORD";
/// "no": AutoCli_ShellCmd runs nothing.
inline constexpr const char* kShellStartVariable = "AUTOCLI_SHELL_START";

/// Runs one host program and waits for it. No shell is involved: `commandLine` is plain words, cut
/// at blanks; the first is the program's absolute path. Its standard input is `input`, its standard
/// output replaces `output`; its environment is fixed.
/// Returns the exit status, 128 and the signal's number when a signal ended it, or -1 when nothing
/// was run: no absolute path, no such program, a byte in the line that means something to a shell,
/// a record that cannot be written, or kShellStartVariable says so.
int AutoCli_ShellCmd(const std::string& commandLine, std::string& output, const std::string& input);

}  // namespace Corvex::AutoCli

/// The one symbol that a plug-in exports. The framework calls it once, after loading, with its
/// root; the plug-in hangs its nodes there. What it registered before an exception stays
/// registered.
extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root);
