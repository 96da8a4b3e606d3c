// What happens inside a process, piece by piece.
#include <benchmark/benchmark.h>

#include "autocli/line/Line.h"
#include "autocli/render/Formatter.h"
#include "autocli/run/Driver.h"
#include "korel/Tree.h"
#include "tests/support/RecordingHost.h"

extern "C" void AutoCli_RegisterNamespaces(std::shared_ptr<Corvex::AutoCli::Namespace>& root);

namespace {

using Corvex::AutoCli::Namespace;

/// Counts what it is given.
class CountingSink final : public autocli::Sink {
 public:
  std::size_t bytes = 0;

 private:
  int Write(std::string_view text) override {
    bytes += text.size();
    return 0;
  }
};

std::shared_ptr<Namespace> KorelRoot() {
  auto root = Namespace::New();
  Corvex::Declare::RegisterTop(*root, OstrelCli::KorelNamespace::Tree());
  return root;
}

void RegisterTree(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(KorelRoot());
}
BENCHMARK(RegisterTree)->Unit(benchmark::kMicrosecond);

void ParseLine(benchmark::State& state) {
  const auto root = KorelRoot();
  const std::vector<std::string> words = {"korel", "network",   "ip", "add",       "-i", "hsk1",
                                          "-d",    "239.1.2.3", "-u", "239.1.2.4", "-p", "2345"};
  for (auto _ : state) {
    const autocli::Line line = autocli::ReadLine({root}, words);
    if (!line.faults.empty()) state.SkipWithError(line.faults.front().message.c_str());
  }
}
BENCHMARK(ParseLine)->Unit(benchmark::kMicrosecond);

void ExecuteLine(benchmark::State& state) {
  test::RecordingHost host;
  const auto root = KorelRoot();
  CountingSink out;
  for (auto _ : state) {
    const int status = autocli::RunLine({"korel", "datastore", "list"}, {root}, {}, out, out);
    if (status != 0) state.SkipWithError("the line failed");
    host.calls.clear();
  }
}
BENCHMARK(ExecuteLine)->Unit(benchmark::kMicrosecond);

/// The result of 100,000 records, made once, and what declares it.
struct Records {
  std::shared_ptr<Corvex::AutoCli::CommandSpec> command;
  Corvex::MetaObj::MetaObjectPtr result;
};

const Records& HundredThousand() {
  static const Records records = [] {
    auto root = Namespace::New();
    AutoCli_RegisterNamespaces(root);
    const autocli::Line line = autocli::ReadLine({root}, {"records", "list", "--count", "100000"});
    const auto output = Corvex::CallSpec::Output::New();
    line.GetCommand()->GetDispatcher()->Execute(line.input, output);
    return Records{line.GetCommand()->GetThis(), output->GetRootObject()};
  }();
  return records;
}

void Render(benchmark::State& state, const char* formatter) {
  const Records& records = HundredThousand();
  const autocli::View view(*records.command->GetOutputSpec()->GetRootObject(),
                           records.command->GetDefaultOutputParameters(), {});
  CountingSink out;
  for (auto _ : state) {
    autocli::FormatterNamed(formatter).Write(*records.result, view, out);
    out.Flush();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(out.bytes));
}
BENCHMARK_CAPTURE(Render, csv, "csv")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, table, "table")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, json, "json")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, simple, "simple")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
