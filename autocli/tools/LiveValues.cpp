#include "autocli/tools/LiveValues.h"

#include <algorithm>
#include <map>

#include "autocli/base/Guard.h"
#include "autocli/contract/Shape.h"
#include "autocli/line/Line.h"
#include "autocli/render/View.h"
#include "autocli/tools/SplitLine.h"

namespace autocli {

using Corvex::CallSpec::Output;
using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaObjectPtr;
using Corvex::MetaObj::MetaString;
using Corvex::MetaObj::MetaStruct;
using Corvex::MetaObj::MetaType;

namespace {

/// The value as it is typed, not escaped; empty when it is unset.
std::string TextOf(const MetaObject& value) {
  if (value.GetType() == MetaType::String) {
    return static_cast<const MetaString&>(value).GetValue().value_or("");
  }
  std::string text;
  AppendText(text, value);
  return text;
}

/// Empty when there is no such field, too.
std::string TextOf(const MetaStruct& record, const std::string& name) {
  const MetaObject* field = record.FindField(name);
  return field == nullptr ? "" : TextOf(*field);
}

/// The field has that text, or, being a list, an element of it.
bool Has(const MetaStruct& record, const std::string& name, const std::string& text) {
  const MetaObject* field = record.FindField(name);
  if (field == nullptr || field->GetType() != MetaType::List) return TextOf(record, name) == text;
  return std::ranges::any_of(static_cast<const MetaList&>(*field).GetElements(),
                             [&](const auto& element) { return TextOf(*element) == text; });
}

bool Counts(const MetaStruct& record, const ValueSource& source) {
  const auto holds = [&](const auto& condition) {
    return Has(record, condition.first, condition.second);
  };
  return std::ranges::all_of(source.where, holds) && std::ranges::none_of(source.except, holds);
}

/// What the command at that path answers with; null when it fails or cannot be executed as it is.
MetaObjectPtr Ask(const Vocabulary& vocabulary, const std::string& path) {
  std::string problem;
  const Line line = ReadLine(vocabulary, SplitLine(path, problem));
  if (line.path != path || line.GetCommand() == nullptr || !line.faults.empty()) return nullptr;
  const auto output = Output::New();
  const auto thrown = Guarded([&] { Execute(*line.GetCommand(), line.specs, line.input, output); });
  const auto result = thrown ? nullptr : output->GetRootObject();
  return result && RecordOf(*result) != nullptr ? result : nullptr;
}

}  // namespace

std::vector<Candidate> LiveValues(const Vocabulary& vocabulary,
                                  const std::vector<ValueSource>& sources) {
  std::vector<Candidate> values;
  std::map<std::string, MetaObjectPtr> answers;
  for (const ValueSource& source : sources) {
    const auto [answer, isNew] = answers.try_emplace(source.command);
    if (isNew) answer->second = Ask(vocabulary, source.command);
    if (answer->second == nullptr) continue;
    ForEachRecord(*answer->second, [&](const MetaStruct& record) {
      if (!Counts(record, source)) return;
      values.push_back({TextOf(record, source.field), TextOf(record, source.about)});
    });
  }
  return values;
}

}  // namespace autocli
