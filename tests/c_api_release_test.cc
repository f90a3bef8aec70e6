// Ownership through the C interface: every delete function gives back exactly
// what the matching new function (or filtersGroupGetEntries) took. This
// program replaces the global allocation functions with counting ones, which
// the shared library uses too, and compares the number of live allocations
// around each call.
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <new>
#include <stdexcept>
#include <vector>

#include "FiltersCommon/filters_common_c.h"
#include "c_api_test_util.h"

// The replacement operators pair malloc with free themselves; once GCC inlines
// them it no longer sees that and reports a mismatch.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

namespace {
std::atomic<long> live_allocations{0};
}  // namespace

void* operator new(std::size_t size) {
  void* p = std::malloc(size == 0 ? 1 : size);
  if (p == nullptr) throw std::bad_alloc();
  ++live_allocations;
  return p;
}

void operator delete(void* p) noexcept {
  if (p == nullptr) return;
  --live_allocations;
  std::free(p);
}

void operator delete(void* p, std::size_t) noexcept { ::operator delete(p); }

// The array forms too: a sanitizer runtime would otherwise take them.
void* operator new[](std::size_t size) { return ::operator new(size); }
void operator delete[](void* p) noexcept { ::operator delete(p); }
void operator delete[](void* p, std::size_t) noexcept { ::operator delete(p); }

namespace FiltersCommon {
namespace {

using c_api_test::Eth;
using c_api_test::Ipv4;
using c_api_test::Ipv6;
using c_api_test::Mac;

// How many allocations `call` leaves alive (negative when it frees some).
long AllocationsLeftBy(const std::function<void()>& call) {
  const long before = live_allocations.load();
  call();
  return live_allocations.load() - before;
}

struct Maker {
  const char* name;
  std::function<void*()> make;
};

// Creates each handle, expects it to have taken memory, and expects `release`
// to give all of it back.
void ExpectReleasedCompletely(const std::vector<Maker>& makers,
                              void (*release)(void*)) {
  for (const Maker& maker : makers) {
    SCOPED_TRACE(maker.name);
    void* handle = nullptr;
    const long taken = AllocationsLeftBy([&] { handle = maker.make(); });
    EXPECT_GT(taken, 0);
    EXPECT_EQ(AllocationsLeftBy([&] { release(handle); }), -taken);
  }
}

const limid_t kPorts[] = {5, 7, 5, 9};

TEST(ReleaseC, DeleteMatchReleasesEveryKindCompletely) {
  const ether_addr mac = Mac(0, 1, 2, 3, 4, 5);
  const in_addr v4 = Ipv4("10.0.0.1");
  const in6_addr v6 = Ipv6("2001:db8::1");
  ExpectReleasedCompletely(
      {
          {"All", [] { return newMatchAll(); }},
          {"IngressPorts", [] { return newMatchIngressPorts(kPorts, 4); }},
          {"IngressPortsEmpty",
           [] { return newMatchIngressPorts(nullptr, 0); }},
          {"EgressPorts", [] { return newMatchEgressPorts(kPorts, 4); }},
          {"ExternalVlanId", [] { return newMatchExternalVlanId(10); }},
          {"InternalVlanId", [] { return newMatchInternalVlanId(20); }},
          {"TPID", [] { return newMatchTPID(0x8100); }},
          {"DstL4Port", [] { return newMatchDstL4Port(1); }},
          {"DstL4PortMask", [] { return newMatchDstL4PortMask(1, 2); }},
          {"SrcL4Port", [] { return newMatchSrcL4Port(1); }},
          {"SrcL4PortMask", [] { return newMatchSrcL4PortMask(1, 2); }},
          {"DstL4PortRange", [] { return newMatchDstL4PortRange(1, 2); }},
          {"DstMac", [&] { return newMatchDstMac(mac); }},
          {"DstMacMask", [&] { return newMatchDstMacMask(mac, mac); }},
          {"SrcMac", [&] { return newMatchSrcMac(mac); }},
          {"SrcMacMask", [&] { return newMatchSrcMacMask(mac, mac); }},
          {"L2SrcEntryType",
           [] { return newMatchL2SrcEntryType(L2_SRC_ENTRY_STATIC); }},
          {"SrcIPv4", [&] { return newMatchSrcIPv4(v4); }},
          {"SrcIPv4Mask", [&] { return newMatchSrcIPv4Mask(v4, v4); }},
          {"DstIPv4", [&] { return newMatchDstIPv4(v4); }},
          {"DstIPv4Mask", [&] { return newMatchDstIPv4Mask(v4, v4); }},
          {"SrcIPv6", [&] { return newMatchSrcIPv6(v6); }},
          {"DstIPv6", [&] { return newMatchDstIPv6(v6); }},
          {"DstIPv6Mask", [&] { return newMatchDstIPv6Mask(v6, v6); }},
          {"Pcp", [] { return newMatchPcp(3); }},
          {"InternalPcp", [] { return newMatchInternalPcp(3); }},
          {"VlanTagging",
           [] { return newMatchVlanTagging(VLAN_TAGGING_UNTAGGED); }},
          {"IpProtocol", [] { return newMatchIpProtocol(6); }},
          {"PacketRes", [] { return newMatchPacketRes(PKT_RES_MPLS); }},
          {"MplsTerm", [] { return newMatchMplsTerm(true); }},
          {"DSCP", [] { return newMatchDSCP(46); }},
          {"TTL", [] { return newMatchTTL(1); }},
          {"VirtualPort", [] { return newMatchVirtualPort(Eth(1)); }},
          {"IngressStpState",
           [] { return newMatchIngressStpState(STP_STATE_LEARNING); }},
          {"VlanInfo",
           [] {
             return newMatchVlanInfo(vlan_info_t{1, 2});
           }},
          {"SrcPort", [] { return newMatchSrcPort(Eth(2)); }},
          {"VrfId", [] { return newMatchVrfId(5); }},
          {"Drop", [] { return newMatchDrop(false); }},
          {"CpuPort", [] { return newMatchCpuPort(); }},
          {"CPUInjectedPackets",
           [] { return newMatchCPUInjectedPackets(true); }},
          {"L2DestHit", [] { return newMatchL2DestHit(true); }},
          {"L3SrcRouteHit", [] { return newMatchL3SrcRouteHit(true); }},
          {"VirtualPortClass", [] { return newMatchVirtualPortClass(3); }},
          {"UnknownDestIp", [] { return newMatchUnknownDestIp(); }},
      },
      &deleteMatch);
}

TEST(ReleaseC, PortVlanAndPcpMatchesHoldTheirListsOnTheHeap) {
  // A match with four ports takes more than one allocation; the test above
  // would not notice a list left behind otherwise.
  void* handle = nullptr;
  EXPECT_GE(
      AllocationsLeftBy([&] { handle = newMatchIngressPorts(kPorts, 4); }), 5);
  deleteMatch(handle);
  EXPECT_GE(AllocationsLeftBy([&] { handle = newMatchExternalVlanId(1); }), 2);
  deleteMatch(handle);
  EXPECT_GE(AllocationsLeftBy([&] { handle = newMatchPcp(1); }), 2);
  deleteMatch(handle);
}

TEST(ReleaseC, DeleteActionReleasesEveryKindCompletely) {
  const ether_addr mac = Mac(2, 0, 0, 0, 0, 1);
  ExpectReleasedCompletely(
      {
          {"Permit", [] { return newActionPermit(); }},
          {"Deny", [] { return newActionDeny(); }},
          {"CopyToCpu", [] { return newActionCopyToCpu(); }},
          {"BlockEgressPorts",
           [] { return newActionBlockEgressPorts(kPorts, 4); }},
          {"BlockEgressPortsEmpty",
           [] { return newActionBlockEgressPorts(nullptr, 0); }},
          {"CopyToCpuCancel", [] { return newActionCopyToCpuCancel(); }},
          {"SwitchToCpuCancel", [] { return newActionSwitchToCpuCancel(); }},
          {"SetPcp", [] { return newActionSetPcp(1); }},
          {"SetPcpAndQueue", [] { return newActionSetPcpAndQueue(1); }},
          {"SetDSCP", [] { return newActionSetDSCP(1); }},
          {"MapToCosQueue", [] { return newActionMapToCosQueue(1); }},
          {"MapToCpuCosQueue", [] { return newActionMapToCpuCosQueue(1); }},
          {"ReplaceDstMac", [&] { return newReplaceDstMac(mac); }},
          {"Redirect", [] { return newActionRedirect(Eth(1)); }},
          {"RedirectCancel", [] { return newActionRedirectCancel(); }},
          {"ReplaceSrcMac", [&] { return newReplaceSrcMac(mac); }},
          {"L3Switch", [] { return newActionL3Switch(1); }},
          {"CopyInnerPcp", [] { return newActionCopyInnerPcp(); }},
          {"MplsPortSet",
           [] {
             return newActionMplsPortSet(limid_make(limid_type_mpls_vpws, 1),
                                         Eth(1));
           }},
          {"DoNotLearnMac", [] { return newActionDoNotLearnMac(); }},
      },
      &deleteAction);
}

TEST(ReleaseC, RefusedMplsPortSetFreesItsAllocation) {
  bool thrown = false;
  EXPECT_EQ(AllocationsLeftBy([&] {
              try {
                newActionMplsPortSet(Eth(1), Eth(2));
              } catch (const std::invalid_argument&) {
                thrown = true;
              }
            }),
            0);
  EXPECT_TRUE(thrown);
}

// Group 3 in the main stage, keyed on IPv4 and layer 4, holding entries 1 to
// `count`, each with a TTL and a port match and two actions.
FiltersGroup* NewGroupWithEntries(filtersEntryId_t count) {
  FiltersGroup* g = newFiltersGroup(3);
  filtersGroupSetStage(g, FILTERS_STAGE_INGRESS);
  filtersGroupSetType(g, FILTERS_TYPE_IPV4_L4);
  for (filtersEntryId_t id = 1; id <= count; ++id) {
    FiltersEntry* e = newFiltersEntry(id);
    void* matches[] = {newMatchTTL(static_cast<uint8_t>(id)),
                       newMatchIngressPorts(kPorts, 4)};
    void* actions[] = {newActionDeny(), newActionBlockEgressPorts(kPorts, 4)};
    for (void* m : matches) {
      filtersEntrySetMatch(e, m);
      deleteMatch(m);
    }
    for (void* a : actions) {
      filtersEntrySetAction(e, a);
      deleteAction(a);
    }
    filtersGroupInsertEntry(g, e);
    deleteFiltersEntry(e);
  }
  return g;
}

TEST(ReleaseC, DeleteFiltersGroupReleasesTheGroupAndItsEntries) {
  deleteFiltersGroup(NewGroupWithEntries(1));  // warms up one-time tables
  EXPECT_EQ(
      AllocationsLeftBy([] { deleteFiltersGroup(NewGroupWithEntries(3)); }), 0);
}

TEST(ReleaseC, EntriesRecordOfAnEmptyGroupHoldsTwoArrays) {
  FiltersGroup* g = newFiltersGroup(1);
  entriesStruct record;
  EXPECT_EQ(AllocationsLeftBy([&] { filtersGroupGetEntries(g, &record); }), 2);
  EXPECT_EQ(AllocationsLeftBy([&] { deleteFiltersEntriesStruct(&record); }),
            -2);
  deleteFiltersGroup(g);
}

TEST(ReleaseC, EntriesRecordIsReleasedCompletelyAndOutlivesTheGroup) {
  FiltersGroup* g = NewGroupWithEntries(3);
  entriesStruct record;
  const long taken =
      AllocationsLeftBy([&] { filtersGroupGetEntries(g, &record); });
  EXPECT_GT(taken, 2 + 3);
  deleteFiltersGroup(g);
  EXPECT_EQ(record.count, 3);
  EXPECT_EQ(AllocationsLeftBy([&] { deleteFiltersEntriesStruct(&record); }),
            -taken);
}

TEST(ReleaseC, CopiedEntryIsReleasedCompletely) {
  FiltersGroup* g = NewGroupWithEntries(1);
  entriesStruct record;
  filtersGroupGetEntries(g, &record);
  FiltersEntry* copy = nullptr;
  const long taken =
      AllocationsLeftBy([&] { copy = copyFiltersEntry(record.entries[0]); });
  EXPECT_GT(taken, 1);
  EXPECT_EQ(AllocationsLeftBy([&] { deleteFiltersEntry(copy); }), -taken);
  deleteFiltersEntriesStruct(&record);
  deleteFiltersGroup(g);
}

}  // namespace
}  // namespace FiltersCommon
