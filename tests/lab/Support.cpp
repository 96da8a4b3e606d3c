#include "tests/lab/Support.h"

#include <SQLiteCpp/Database.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "lab/model/Lab.h"
#include "lab/store/Query.h"

namespace lab_test {

using Tovrin::Lib::Korel::KorelCtlException;

void StandOn(const std::string& host) { setenv("KOREL_LAB_HOST", host.c_str(), 1); }

void AddHostsUpTo(int last) {
  lab::ChangeLab([&](lab::Store& store) {
    for (int i = 2; i <= last; ++i) {
      lab::AddHost(store, lab::StandardHost("host" + std::to_string(i)));
    }
  });
}

std::unique_ptr<Tovrin::Korel::KorelInfo> HostControl() {
  return Tovrin::Lib::Korel::KorelPluginFactory::GetKorelPlugin()->GetKorelInfo();
}

std::unique_ptr<Tovrin::Korel::KorelInfo> At(const std::string& host) {
  StandOn(host);
  return HostControl();
}

std::string Failure(const std::function<void()>& work) {
  try {
    work();
    return {};
  } catch (const KorelCtlException& failure) {
    return failure.GetMessage();
  }
}

std::string State() {
  return lab::ReadLab([](lab::Store& store) {
    std::ostringstream state;
    for (const auto& table : lab::Texts(store,
                                        "SELECT name FROM sqlite_schema WHERE type = "
                                        "'table' AND name <> 'history' ORDER BY name")) {
      state << table << "\n";
      lab::Rows rows = lab::Query(store, ("SELECT * FROM " + table).c_str());
      while (rows.executeStep()) {
        for (int i = 0; i < rows.getColumnCount(); ++i) {
          state << "|" << rows.getColumn(i).getString();
        }
        state << "\n";
      }
    }
    return state.str();
  });
}

void ExpectRefused(const std::function<void()>& work, const std::string& message) {
  const std::string before = State();
  EXPECT_EQ(Failure(work), message);
  EXPECT_EQ(State(), before);
}

void ExpectRefusals(const std::vector<std::pair<std::function<void()>, std::string>>& refusals) {
  for (const auto& [act, message] : refusals) {
    SCOPED_TRACE(message);
    ExpectRefused(act, message);
  }
}

std::string NotUuid(const std::string& text) {
  return "'" + text + "' is not a UUID of the form \"nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn\"";
}

void Command(int number, const std::string& line) {
  const std::string text = std::to_string(getpid()) + " " + std::to_string(number) + " " + line;
  setenv("AUTOCLI_LINE", text.c_str(), 1);
}

void Sql(const std::string& sql) {
  SQLite::Database(std::getenv("KOREL_LAB"), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
      .exec(sql);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

LabTest::LabTest() {
  std::string name = testing::TempDir() + "lab-XXXXXX";
  folder_ = mkdtemp(name.data());
  setenv("KOREL_LAB", LabFile().c_str(), 1);
  for (const char* variable : {"KOREL_LAB_HOST", "KOREL_LAB_CALLS", "AUTOCLI_LINE"}) {
    unsetenv(variable);
  }
}

LabTest::~LabTest() {
  lab::Store::CloseForProcess();
  std::filesystem::remove_all(folder_);
}

}  // namespace lab_test
