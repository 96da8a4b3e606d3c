#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "lab/model/Lab.h"
#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Misc.h"
#include "tests/support/Files.h"

namespace lab_test {

inline const std::string kClusterA = "aaaaaaaa-0000-4000-8000-000000000001";
inline const std::string kClusterB = "bbbbbbbb-0000-4000-8000-000000000002";
inline const std::string kDatastore1 = "d0000000-0000-4000-8000-000000000001";
inline const std::string kZeros = "00000000-0000-0000-0000-000000000000";

/// Calls of host control operations that follow act on that host of the lab.
void StandOn(const std::string& host);

/// Runs one of the lab's own functions on the host that is stood on.
template <typename Work, typename... Values>
auto Own(Work work, const Values&... values) {
  return lab::ChangeLab(
      [&](lab::Store& store) { return work(store, lab::CurrentHost(store), values...); });
}

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

/// Changes that follow are made by that command of the process.
void Command(int number, const std::string& line);

/// What the operations of another program do to the lab's file.
void Sql(const std::string& sql);

using test::ReadFile;
using test::WriteFile;

/// A case in a folder of its own, with a lab that does not exist yet.
class LabTest : public testing::Test {
 protected:
  LabTest();
  ~LabTest() override { lab::Store::CloseForProcess(); }

  /// A path in the folder.
  std::string Path(const std::string& name) const { return folder_ / name; }
  std::string LabFile() const { return Path("lab.db"); }

 private:
  test::Folder folder_;
};

// What hosts do and what is seen of them as short texts, so that a rule is a row of a table.
//
// A script is acts separated by "; ": a host's number, a verb of Support.cpp and its words, such
// as "2 join A". A word may be short for a UUID: A to D of clusters, of which the labs here do not
// have D, dA and dB of their default datastores, d1 and d2 of others, n1 and n2 of nodes, "#s1" of
// the host's device s1, "#host1" of that host, zeros; thumb is a thumbprint. The modes of an
// evacuation are all and half. "-" is an empty text, "%0a" that byte, "(xy)3" is "xyxyxy". Any
// other word stands for itself.

using Texts = std::vector<std::string>;

/// What the word is short for.
std::string Long(const std::string& word);
/// A text with what there is a short word for in short.
std::string Short(std::string text);

/// Carries the script out, and stands on the host of the last act then. Returns what the act that
/// fails says, in short, after which none follows; empty when all are done.
std::string Play(const std::string& script);

/// A case of tables. A row is a line: a script, or several with slashes between them, and after an
/// arrow what is expected of each. Each begins with the lab that the first one found. Three points
/// in what is expected stand for anything.
class RowsTest : public LabTest {
 protected:
  /// Expects that each script is carried out, after which the view says what stands beside it.
  void Expect(const std::function<std::string()>& view, const std::string& table);
  /// Expects that the last act of each script fails with that message and changes nothing.
  void ExpectRefusals(const std::string& table);
  /// Runs the test with each script and what is expected of it.
  void EachRow(const std::string& table,
               const std::function<void(const std::string&, const std::string&)>& test);
  /// Puts back the lab that the first row found.
  void Again();

 private:
  std::string first_;
};

/// Hosts 1 and 2 are in cluster A and 6 is its witness, 3 is in B, 4 in client cluster C, 5 in
/// none.
class ClustersTest : public RowsTest {
 protected:
  ClustersTest();
};

/// Makes a lab with a host for each of the texts between slashes, which name its devices and their
/// sizes in GB: "c1 s1 s2=40 / c1 f1". The first letter is the kind: c for caching flash, f for
/// flash with the capacity tag, s for spinning. The size is 400 when none is given.
void MakeHosts(const std::string& hosts);

/// The disk groups and the pool of host1 in the order of its inventory, with the data on each
/// capacity disk, and a minus at what is not mounted: "c1(s1:100 s2:0-) c2-(s3:100-) pool(f1:10)".
std::string Groups();

/// A host with groups c1 of s1 and s2 and c2 of s3, with 100 GB of data on each of these, a pool of
/// f1, with 10, and c3, s4 and f2 to spare.
class DisksTest : public RowsTest {
 protected:
  DisksTest();
};

}  // namespace lab_test
