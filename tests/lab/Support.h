#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Misc.h"

namespace lab_test {

inline const std::string kClusterA = "aaaaaaaa-0000-4000-8000-000000000001";
inline const std::string kClusterB = "bbbbbbbb-0000-4000-8000-000000000002";
inline const std::string kClusterC = "cccccccc-0000-4000-8000-000000000003";
inline const std::string kDatastore1 = "d0000000-0000-4000-8000-000000000001";
inline const std::string kDatastore2 = "d0000000-0000-4000-8000-000000000002";
inline const std::string kZeros = "00000000-0000-0000-0000-000000000000";

/// Calls of host control operations that follow act on that host of the lab.
void StandOn(const std::string& host);

/// Adds standard hosts "host2" to "hostN".
void AddHostsUpTo(int last);

/// The control interface of the host that is stood on.
std::unique_ptr<Tovrin::Korel::KorelInfo> HostControl();

/// The same of that host, which is stood on from now on.
std::unique_ptr<Tovrin::Korel::KorelInfo> At(const std::string& host);

/// The message of the KorelCtlException that `work` throws; empty when it throws none.
std::string Failure(const std::function<void()>& work);

/// All rows but those of the memory, as text: equal states are equal texts.
std::string State();

/// Expects that `work` fails with that message and changes nothing.
void ExpectRefused(const std::function<void()>& work, const std::string& message);

/// Expects each act to fail with the message beside it and to change nothing.
void ExpectRefusals(const std::vector<std::pair<std::function<void()>, std::string>>& refusals);

/// What is said about a text that is no UUID.
std::string NotUuid(const std::string& text);

/// Changes that follow are made by that command of the process.
void Command(int number, const std::string& line);

/// What the operations of another program do to the lab's file.
void Sql(const std::string& sql);

std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& content);

/// A case in a folder of its own, with a lab that does not exist yet.
class LabTest : public testing::Test {
 protected:
  LabTest();
  ~LabTest() override;

  /// A path in the folder.
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  std::string LabFile() const { return Path("lab.db"); }

 private:
  std::filesystem::path folder_;
};

}  // namespace lab_test
