// What goes both ways between a plug-in and the framework, each with a C++ runtime of its own.
#include <sstream>

#include "platform/autocli/Declare.h"

using namespace Corvex;
using namespace Corvex::Declare;

struct Counted {
  Counted() { ++alive; }
  virtual ~Counted() { --alive; }
  static inline int alive = 0;
};

class CrossingCheck : public virtual Counted, public AutoCli::Command {
 public:
  static std::shared_ptr<CrossingCheck> New() { return std::make_shared<CrossingCheck>(); }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return Inputs(); }
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
    return Answers(MetaString::New());
  }
  void ExecuteInternal(const InputPtr&, const OutputPtr& output) override {
    std::ostringstream text;
    text << std::boolalpha;
    auto space = AutoCli::Namespace::New();
    space->RegisterNamespaceNode(New(), "x");
    try {
      space->RegisterNamespaceNode(New(), "x");
    } catch (const std::invalid_argument& taken) {
      text << "caught: " << taken.what() << ", alive: " << alive;
    }
    auto node = space->GetNamespaceNode("x");
    text << ", cast: " << (std::dynamic_pointer_cast<CrossingCheck>(node) != nullptr)
         << (dynamic_cast<Counted*>(node.get()) != nullptr);
    space.reset();
    text << ", orphaned: " << (node->GetParent() == nullptr) << (node.use_count() == 1);
    output->SetRootObject(MetaString::New(text.str()));
  }
};

struct Trouble : virtual std::exception {
  const char* what() const noexcept override { return "thrown through a virtual base"; }
};

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<AutoCli::Namespace>& root) {
  RegisterTop(*root, {"crossing", "", {Verb<CrossingCheck>("check")}});
  throw Trouble();
}
