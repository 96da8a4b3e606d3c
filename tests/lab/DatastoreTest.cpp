#include "tests/lab/Support.h"

namespace lab_test {
namespace {

/// The datastores that the host knows, in its order: "default* of A, far of B", the star for the
/// default one.
std::string Datastores(const char* host) {
  std::string known;
  for (const auto& datastore : At(host)->GetDatastores()) {
    known += (known.empty() ? "" : ", ") + datastore->GetName() +
             (datastore->IsDefault() ? "* of " : " of ") + Short(datastore->GetClusterUuid());
  }
  return known;
}

/// Cluster A has datastore 2, B has datastore 1.
class DatastoreTest : public ClustersTest {
 protected:
  DatastoreTest() { EXPECT_EQ(Play("1 add d2 ds; 3 add d1 export"), ""); }
};

TEST_F(DatastoreTest, EachHostKnowsItsClustersDefaultOneFirstThenByName) {
  const auto all = [] {
    return Datastores("host2") + "| " + Datastores("host3") + "|" + Datastores("host4");
  };
  Expect(all, R"(
                              -> default* of A, ds of A| default* of B, export of B|
1 add d1 far B; 4 add d1 x B; 1 remove d1 -> default* of A, ds of A| default* of B, export of B|x of B
3 reboot; 3 restore           -> default* of A, ds of A| default* of B, export of B|
2 add n1 above                -> default* of A, above of A, ds of A| default* of B, export of B|
1 rename - zz                 -> zz* of A, ds of A| default* of B, export of B|
1 remove d2; 3 clear          -> default* of A| default* of B|
4 add d2 a A; 4 add dB b B    -> default* of A, ds of A| default* of B, export of B|a of A, b of B
1 add d1 far B; 3 rename d1 x -> default* of A, ds of A, far of B| default* of B, x of B|
1 add d1 far B; 1 clear       -> default* of A| default* of B, export of B|
3 add d2 ds                   -> default* of A, ds of A| default* of B, ds of B, export of B|
3 leave B                     -> default* of A, ds of A| |
5 create D once; 5 add n1 mine; 1 add n1 far D; 4 add n1 x D; 5 reboot -> default* of A, ds of A| default* of B, export of B|
4 add d1 x B; 3 reboot; 2 reboot -> | |x of B
)");
  Again();
  EXPECT_EQ(Play("1 add d1 far B; 3 rename - main"), "");
  EXPECT_EQ(HostControl()->GetDatastoreName(""), "main");
  EXPECT_EQ(At("host1")->GetDatastoreName(kDatastore1), "far");
  EXPECT_EQ(Failure([] { At("host4")->GetDatastoreName(""); }),
            "a client cluster has no default datastore; --uuid names another one");
}

TEST_F(DatastoreTest, ASharedWitnessKnowsThoseOfAllItsClustersEachOnce) {
  ASSERT_EQ(Play("6 join B witness host3"), "");
  Expect([] { return Datastores("host6"); }, R"(
                                -> default* of A, ds of A, default* of B, export of B
1 add d1 far B                  -> default* of A, ds of A, default* of B, export of B
1 add d1 far B; 6 leave B       -> default* of A, ds of A, far of B
6 leave A                       -> default* of B, export of B
6 add n1 new                    -> default* of A, ds of A, new of A, default* of B, export of B
6 remove d1; 6 rename - main    -> main* of A, ds of A, default* of B
6 rename dB main; 6 rename dB main; 6 clear -> default* of A, main* of B, export of B
)");
}

TEST_F(DatastoreTest, Refusals) {
  ExpectRefusals(R"(
1 add n1 ds / 1 add d1 ds B / 1 rename - ds -> datastore name 'ds' is taken by datastore d2; 'korel datastore name set'...
1 add d1 far B; 1 add n1 far / 1 add d1 far B; 1 rename d2 far / 4 add d1 far B; 4 add d2 far A -> datastore name 'far' is taken by datastore d1; 'korel datastore name set'...
1 add d2 new / 1 add d1 far B; 2 add d1 new -> datastore UUID ... is taken; 'korel datastore list'...
3 add d2 new; 1 add d2 far B -> datastore UUID d2 is taken; 'korel datastore list'...
6 join B witness host3; 6 add d1 new -> datastore UUID d1 is taken; 'korel datastore list'...
6 join B witness host3; 6 add n1 export -> datastore name 'export' is taken by datastore d1; 'korel datastore name set'...
1 add d1 far B; 2 add d1 again B -> datastore d1 is mounted already, as 'far'; 'korel datastore list'...
1 add d2 new B  -> cluster B exports no datastore d2; 'korel datastore list' on one of its hosts shows those it does
1 add d2 new A  -> cluster A is the host's own; its datastores are not mounted as remote ones...
1 add d2 new D  -> there is no cluster D; 'autocli lab cluster list' shows those there are
1 add d2 new DDDDDDDD-0000-4000-8000-000000000004 -> there is no cluster DDDDDDDD-0000-4000-8000-000000000004; ...
1 add D0000000-0000-4000-8000-000000000002 new B -> cluster B exports no datastore D0000000-0000-4000-8000-000000000002; ...
1 add d2 new x  -> 'x' is not a UUID of the form...
1 add n1 new - default -> a default datastore is made with its cluster, never added
1 add zeros new -> the UUID of all zeros stands for none and cannot be used
1 remove dA / 1 rename dA main; 2 remove dA -> the default datastore cannot be removed; ...
1 remove d1 / 1 rename d1 new -> the host knows no datastore d1; 'korel datastore list' shows...
1 remove DDDDDDDD-0000-4000-8000-000000000004 -> the host knows no datastore DDDDDDDD-0000-4000-8000-000000000004; ...
1 remove -      -> '' is not a UUID of the form...
1 add d1 far B; 1 rename d1 new -> datastore 'far' belongs to cluster B and is renamed there, by 'korel datastore name set'
4 add d2 far A; 1 remove d2 -> datastore 'ds' is mounted by client cluster C; that ends by 'korel cluster leave'...
1 add n1 aa; 4 add d2 x A; 3 add d2 x A; 1 clear -> datastore 'ds' is mounted by cluster B, client cluster C; ...
4 add n1 new / 4 add d2 far A; 4 remove d2 / 4 clear -> Korel is not enabled on this host: it is in client cluster C, which it leaves by 'korel cluster leave --cluster-uuid C'
4 rename - new  -> a client cluster has no default datastore; --uuid names another one
5 add n1 new / 5 add d1 far B / 5 clear -> Korel is not enabled on this host: it is in no cluster; 'korel cluster...
1 reboot; 1 remove d2 -> Korel is not enabled on this host: it is in no cluster now; 'korel cluster restore' restores its membership
)");
}

TEST_F(DatastoreTest, NamesOfDatastoresAndHostsAtTheirEdges) {
  Expect([] { return ""; }, R"(
1 rename - 9 / 1 rename - Z(-)79 / 1 rename - azAZ09._- / 1 addhost 9 / 1 addhost Z(_)79 ->
)");
  ExpectRefusals(R"(
1 add n1 a/b / 1 rename - a%00b / 1 rename - a%20b / 1 rename - a%0a / 1 rename - a,b / 1 rename - a:b / 1 rename - a@b / 1 rename - a[b -> ... is not a datastore name...
1 rename - a`b / 1 rename - a{b / 1 rename - a^b / 1 rename - %c3%a9 / 1 rename - - / 1 rename - -a / 1 rename - .a / 1 rename - _a -> ... is not a datastore name...
1 rename - (x)81                                              -> '...' is not a datastore name: ...
1 addhost - / 1 addhost -a / 1 addhost ../a / 1 addhost a%00b / 1 addhost (x)81 -> '...' is not a host name: ...
1 addhost (x)100000                                           -> 'xxxxxxxxxxxxxxxxxxxx...' is not a host name: 1 to 80 letters, digits, points, underscores and hyphens, a letter or digit first
1 addhost host2                                               -> the lab has a host 'host2' already
)");
}

}  // namespace
}  // namespace lab_test
