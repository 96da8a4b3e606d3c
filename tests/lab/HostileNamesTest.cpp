#include "lab/model/Lab.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HostileNamesTest = LabTest;

TEST_F(HostileNamesTest, AreNoNamesOfDatastoresHostsOrDevices) {
  const auto host = HostControl();
  host->CreateCluster(kClusterA, true, false);
  const std::string rule =
      " name: 1 to 80 letters, digits, points, underscores and hyphens, a letter or digit first";
  for (const auto& name :
       {std::string(), std::string("a b"), std::string("-leading"), std::string(".."),
        std::string("a/b"), std::string("$(reboot)"), std::string("a'b"), std::string("line\nfeed"),
        std::string("\x1b[2J"), std::string("bad\xff"), std::string("nul\0", 4),
        std::string(81, 'x'), std::string(100'000, 'x')}) {
    // No message repeats a long one whole.
    const std::string cut = name.size() > 100 ? name.substr(0, 100) + "..." : name;
    const lab::HostInventory standard = lab::StandardHost(name);
    ExpectRefused([&] { host->SetDatastoreName("", name); },
                  "'" + cut + "' is not a datastore" + rule);
    ExpectRefused([&] { lab::InLab([&](auto& store) { lab::AddHost(store, standard); }); },
                  "'" + cut + "' is not a host" + rule);
    ExpectRefused([&] { host->RemoveDisk(name, ""); }, "the host has no device '" + cut + "'");
    ExpectRefused([&] { host->JoinClientCluster(name, false); }, NotUuid(cut));
  }
  host->SetDatastoreName("", "a.b_C-9" + std::string(73, 'x'));
}

TEST_F(HostileNamesTest, FaultDomainsTakeAnyTextWithoutControlCharacters) {
  const auto host = HostControl();
  std::string longest = "x";
  while (longest.size() < 256) longest += "\xe2\x82\xac";
  for (const std::string& name : {std::string("$(reboot) 'a"), longest}) {
    host->SetFaultDomainName(name);
    EXPECT_EQ(host->GetFaultDomainName(), name);
  }
  const std::pair<std::string, std::string> refusals[] = {
      {"", "a fault domain name has 1 to 256 characters, got 0"},
      {longest + "x", "a fault domain name has at most 256 bytes, got 257"},
      {"a\xc2\x9b", "fault domain name 'a\xc2\x9b' has a control character in it"},
      {"a\xff", "fault domain name 'a\xff' is not UTF-8"}};
  for (const auto& [name, message] : refusals) {
    ExpectRefused([&, &tried = name] { host->SetFaultDomainName(tried); }, message);
  }
}

TEST_F(HostileNamesTest, MeetNoShellWhenAProgramIsReallyRun) {
  const auto run = [](const std::string& arguments) {
    return HskCtl::Korel::KorelUtil::KorelExec("/bin/tool", arguments, false, true, false);
  };
  EXPECT_EQ(Failure([] { Tovrin::Misc::HostPath("/etc/.."); }), "'/etc/..' has a \"..\" in it");
  EXPECT_EQ(Failure([] { Tovrin::Misc::HostPath("etc"); }), "'etc' is not an absolute path");
  EXPECT_EQ(run("x"), -1) << "no such program";
  const std::string tool = Tovrin::Misc::HostPath("/bin/tool");
  std::filesystem::create_directories(std::filesystem::path(tool).parent_path());
  WriteFile(
      tool,
      "#!/bin/sh\n"
      "case $1 in exit) exit $2;; kill) kill -9 $$;; *) printf '%s,' \"$@\" > \"$1\"; esac\n");
  std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
  EXPECT_EQ(run(" exit  3 "), 3);
  EXPECT_EQ(run("kill"), 128 + 9);
  EXPECT_EQ(run(Path("out") + " $(id) ; *"), 0);
  EXPECT_EQ(ReadFile(Path("out")), Path("out") + ",$(id),;,*,");
}

}  // namespace
}  // namespace lab_test
