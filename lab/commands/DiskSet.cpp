#include <algorithm>
#include <iterator>

#include "lab/base/Text.h"
#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

/// The words of an option in the order of the enumeration's values.
using Words = std::vector<ParameterConstraint::EnumValue>;

const Words kOccupants{{"none", ""}, {"partitions", ""}, {"other-host", ""}};
const Words kEfficiencies{{"none", ""}, {"deduplication", ""}, {"compression", ""}};
const Words kEncryptions{{"off", ""}, {"key-missing", ""}, {"on", ""}};
const Words kChecksums{{"none", ""}, {"disk", ""}, {"encryption", ""}};

/// What a device is to be, option by option.
class Setting {
 public:
  Setting(Store& store, const InputPtr& input)
      : store_(store),
        input_(input),
        host_(CurrentHost(store)),
        device_(input->GetParameter("device")) {}

  /// Calls the setter with what `read` makes of the input, if the option is there.
  template <typename Value, typename Read>
  void Apply(const char* option, void (*set)(Store&, const Host&, const std::string&, Value),
             const Read& read) {
    if (input_->HasParameter(option)) set(store_, host_, device_, read(option));
  }

  /// The same of an option that is one of the words.
  template <typename Enum>
  void ApplyWord(const char* option, void (*set)(Store&, const Host&, const std::string&, Enum),
                 const Words& words) {
    Apply(option, set, [&](const char* name) {
      const std::string word = input_->GetParameter(name);
      for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].value == word) return static_cast<Enum>(i);
      }
      Fail("--", name, " cannot be ", Quoted(word));
    });
  }

 private:
  Store& store_;
  const InputPtr& input_;
  Host host_;
  std::string device_;
};

class LabDiskSet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "device",
          .shortName = "d",
          .required = true,
          .description = "Name of the device, in use or not."},
         {.name = "healthy",
          .type = ParameterType::Bool,
          .description = "Whether the device works as it should."},
         {.name = "occupant",
          .constraint = StringEnum(kOccupants),
          .description = "What a device that is not in use is found to hold: %ENUM%."},
         {.name = "format-version",
          .type = ParameterType::Int,
          .constraint = IntRange(1, kNewestFormatVersion),
          .description = "On-disk format of a device in use: %ENUM%."},
         {.name = "data",
          .type = ParameterType::Int,
          .constraint = IntRange(0, kMaxSizeGb),
          .description = "How many GB of data a capacity device in use holds, up to its size."},
         {.name = "efficiency",
          .constraint = StringEnum(kEfficiencies),
          .description =
              "How its disk group saves room, or the device, in the storage pool: %ENUM%. Deduplication comes with compression."},
         {.name = "encryption",
          .constraint = StringEnum(kEncryptions),
          .description =
              "Whether its disk group is encrypted, or the device, in the storage pool: %ENUM%. A key is missing on the device alone."},
         {.name = "wrong-checksum",
          .constraint = StringEnum(kChecksums),
          .description =
              "Which checksum of a device in use is wrong: %ENUM%. The last one is that of its encryption metadata."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    constexpr const char* kSettings[] = {"healthy",    "occupant",   "format-version", "data",
                                         "efficiency", "encryption", "wrong-checksum"};
    if (std::none_of(std::begin(kSettings), std::end(kSettings),
                     [&](const char* name) { return input->HasParameter(name); })) {
      return Refuse(output, "Nothing to set, use an option beside --device.");
    }
    const auto number = [&](const char* name) { return input->GetParameterInt(name); };
    ChangeLab([&](Store& store) {
      Setting setting(store, input);
      setting.Apply("healthy", SetHealth,
                    [&](const char* name) { return input->GetParameterBool(name); });
      setting.ApplyWord("occupant", SetOccupant, kOccupants);
      setting.Apply("format-version", SetFormatVersion,
                    [&](const char* name) { return static_cast<int>(number(name)); });
      setting.Apply("data", SetData, number);
      setting.ApplyWord("efficiency", SetEfficiency, kEfficiencies);
      setting.ApplyWord("encryption", SetEncryption, kEncryptions);
      setting.ApplyWord("wrong-checksum", SetWrongChecksum, kChecksums);
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDiskSet() { return std::make_shared<LabDiskSet>(); }

}  // namespace lab
