/*
 * A C client of the filter library, written against the C headers only.
 *
 * It builds filter groups of several entries with matches and actions of
 * many kinds, reads the entries back through filtersGroupGetEntries, checks
 * every value it can through the C getters, and releases everything it was
 * given. It exits non-zero on the first group of mismatches; run under a
 * leak checker it also proves that the ownership rules leave nothing behind.
 */
#include <stdio.h>
#include <string.h>

#include "FiltersCommon/filters_common_c.h"
#include "c_check.h"
#include "limid/limid.h"

static struct ether_addr mac_of(uint8_t a, uint8_t b, uint8_t c, uint8_t d,
                                uint8_t e, uint8_t f) {
  struct ether_addr mac = {{a, b, c, d, e, f}};
  return mac;
}

/* a.b.c.d in network byte order. */
static struct in_addr ipv4_of(uint8_t a, uint8_t b, uint8_t c, uint8_t d) {
  struct in_addr ip;
  uint8_t bytes[4] = {a, b, c, d};
  memcpy(&ip, bytes, sizeof bytes);
  return ip;
}

/* 2001:db8::<last>, or all ones when `ones` is set. */
static struct in6_addr ipv6_of(int ones, uint8_t last) {
  struct in6_addr ip;
  memset(&ip, ones ? 0xFF : 0, sizeof ip);
  if (!ones) {
    ip.s6_addr[0] = 0x20;
    ip.s6_addr[1] = 0x01;
    ip.s6_addr[2] = 0x0d;
    ip.s6_addr[3] = 0xb8;
    ip.s6_addr[15] = last;
  }
  return ip;
}

static limid_t eth(uint32_t index) {
  return limid_make(limid_type_ethernet, index);
}

/* Stores copies of `matches` and `actions` in `e` and frees the handles: the
 * entry keeps its own copies. */
static void fill_entry(FiltersEntry* e, void** matches, int match_count,
                       void** actions, int action_count) {
  int i;
  for (i = 0; i < match_count; ++i) {
    CHECK(filtersEntrySetMatch(e, matches[i]) == FILTERS_OK);
    deleteMatch(matches[i]);
  }
  for (i = 0; i < action_count; ++i) {
    CHECK(filtersEntrySetAction(e, actions[i]) == FILTERS_OK);
    deleteAction(actions[i]);
  }
}

/* Reads the match of the kind of `probe` out of `e` into `probe`. */
static void* read_match(FiltersEntry* e, void* probe) {
  CHECK(filtersEntryGetMatch(e, probe) == FILTERS_OK);
  return probe;
}

static void* read_action(FiltersEntry* e, void* probe) {
  CHECK(filtersEntryGetAction(e, probe) == FILTERS_OK);
  return probe;
}

/* Group 10: stage 0, type 3 (IPv4 and layer 4), entries 10, 20 and 30. */
static FiltersGroup* build_ipv4_group(void) {
  FiltersGroup* g = newFiltersGroup(10);
  FiltersEntry* e;
  const limid_t ingress[] = {eth(1), eth(2)};
  const limid_t blocked[] = {eth(4), eth(5), eth(4)};

  filtersGroupSetPriority(g, 5);
  filtersGroupSetStage(g, FILTERS_STAGE_LOOKUP);
  CHECK(filtersGroupSetType(g, FILTERS_TYPE_IPV4_L4) == FILTERS_OK);

  e = newFiltersEntry(30);
  filtersEntrySetPriority(e, 300);
  {
    void* matches[] = {
        newMatchIngressPorts(ingress, 2), newMatchExternalVlanId(100),
        newMatchTPID(0x8100),
        newMatchSrcIPv4Mask(ipv4_of(10, 0, 0, 0), ipv4_of(255, 0, 0, 0)),
        newMatchDstL4Port(443)};
    void* actions[] = {newActionPermit(),          newActionSetPcp(5),
                       newActionSetDSCP(46),       newActionMapToCosQueue(3),
                       newActionCopyToCpuCancel(), newActionL3Switch(77)};
    fill_entry(e, matches, 5, actions, 6);
  }
  CHECK(filtersGroupInsertEntry(g, e) == FILTERS_OK);
  /* The group holds a copy: changing or freeing ours does not reach it. */
  filtersEntrySetPriority(e, 301);
  deleteFiltersEntry(e);

  e = newFiltersEntry(10);
  filtersEntrySetPriority(e, 100);
  {
    void* matches[] = {newMatchSrcL4PortMask(1024, 0xFC00),
                       newMatchDstIPv4(ipv4_of(192, 168, 1, 1)),
                       newMatchIpProtocol(6), newMatchTTL(64)};
    void* actions[] = {
        newActionDeny(),
        newActionRedirect(eth(3)),
        newReplaceDstMac(mac_of(0x02, 0, 0, 0, 0, 0x01)),
        newReplaceSrcMac(mac_of(0x02, 0, 0, 0, 0, 0x02)),
        newActionBlockEgressPorts(blocked, 3),
        newActionMplsPortSet(limid_make(limid_type_mpls_vpws, 7), eth(2)),
        newActionSwitchToCpuCancel(),
        newActionCopyToCpu(),
        newActionRedirectCancel(),
        newActionCopyInnerPcp(),
        newActionSetPcpAndQueue(0x35)};
    fill_entry(e, matches, 4, actions, 11);
  }
  CHECK(filtersGroupInsertEntry(g, e) == FILTERS_OK);
  deleteFiltersEntry(e);

  e = newFiltersEntry(20);
  {
    void* matches[] = {newMatchAll()};
    fill_entry(e, matches, 1, NULL, 0);
  }
  CHECK(filtersGroupInsertEntry(g, e) == FILTERS_OK);
  deleteFiltersEntry(e);

  /* Refusals leave the group as it was. */
  e = newFiltersEntry(40);
  {
    void* matches[] = {newMatchDstMac(mac_of(0, 1, 2, 3, 4, 5))};
    fill_entry(e, matches, 1, NULL, 0);
  }
  CHECK(filtersGroupInsertEntry(g, e) == FILTERS_ERR_MATCH_NOT_ALLOWED);
  CHECK(filtersEntryDeleteMatch(e, FILTERS_MATCH_DST_MAC) == FILTERS_OK);
  {
    void* actions[] = {newActionMapToCpuCosQueue(2)};
    fill_entry(e, NULL, 0, actions, 1);
  }
  CHECK(filtersGroupInsertEntry(g, e) == FILTERS_ERR_ACTION_NOT_ALLOWED);
  deleteFiltersEntry(e);

  CHECK(filtersGroupRemoveEntry(g, 99) == FILTERS_ERR_NOT_FOUND);
  CHECK(filtersGroupRemoveEntry(NULL, 10) == FILTERS_ERR_REFUSED);
  return g;
}

static void check_entry_30(FiltersEntry* e) {
  void* m;
  void* a;
  CHECK(filtersEntryGetId(e) == 30);
  CHECK(filtersEntryGetPriority(e) == 300);

  m = read_match(e, newMatchIngressPorts(NULL, 0));
  CHECK(matchGetType(m) == FILTERS_MATCH_INGRESS_PORTS);
  deleteMatch(m);
  m = read_match(e, newMatchExternalVlanId(0));
  deleteMatch(m);
  m = read_match(e, newMatchTPID(0));
  CHECK(matchGetTPID(m) == 0x8100);
  deleteMatch(m);
  m = read_match(e, newMatchSrcIPv4(ipv4_of(0, 0, 0, 0)));
  CHECK(matchIPv4GetIPv4(m)->s_addr == ipv4_of(10, 0, 0, 0).s_addr);
  CHECK(matchIPv4GetIPv4Mask(m)->s_addr == ipv4_of(255, 0, 0, 0).s_addr);
  deleteMatch(m);
  m = read_match(e, newMatchDstL4Port(0));
  CHECK(matchGetL4Port(m) == 443);
  CHECK(matchGetL4PortMask(m) == 0xFFFF);
  deleteMatch(m);
  /* Entry 30 has no TTL match. */
  m = newMatchTTL(9);
  CHECK(filtersEntryGetMatch(e, m) == FILTERS_ERR_NOT_FOUND);
  CHECK(matchTTLGet(m) == 9);
  deleteMatch(m);

  a = read_action(e, newActionPermit());
  CHECK(actionGetType(a) == FILTERS_ACTION_PERMIT);
  deleteAction(a);
  a = read_action(e, newActionSetPcp(0));
  CHECK(actionSetPcpGetPcp(a) == 5);
  deleteAction(a);
  a = read_action(e, newActionSetDSCP(0));
  CHECK(actionSetDSCPGetDSCP(a) == 46);
  deleteAction(a);
  a = read_action(e, newActionMapToCosQueue(0));
  CHECK(actionMapToCosQueueGetCosQueue(a) == 3);
  deleteAction(a);
  a = read_action(e, newActionSwitchToCpuCancel());
  CHECK(actionCopyToCpuCancelGetTypeOfCancel(a) == COPY_TO_CPU_CANCEL);
  deleteAction(a);
  a = read_action(e, newActionL3Switch(0));
  CHECK(actionL3SwitchGetL3DestinationId(a) == 77);
  deleteAction(a);
}

static void check_entry_10(FiltersEntry* e) {
  void* m;
  void* a;
  CHECK(filtersEntryGetId(e) == 10);
  CHECK(filtersEntryGetPriority(e) == 100);

  m = read_match(e, newMatchSrcL4Port(0));
  CHECK(matchGetL4Port(m) == 1024);
  CHECK(matchGetL4PortMask(m) == 0xFC00);
  deleteMatch(m);
  m = read_match(e, newMatchDstIPv4(ipv4_of(0, 0, 0, 0)));
  CHECK(matchIPv4GetIPv4(m)->s_addr == ipv4_of(192, 168, 1, 1).s_addr);
  CHECK(matchIPv4GetIPv4Mask(m)->s_addr == ipv4_of(255, 255, 255, 255).s_addr);
  deleteMatch(m);
  m = read_match(e, newMatchIpProtocol(0));
  CHECK(matchIpProtocolGetIpProt(m) == 6);
  deleteMatch(m);
  m = read_match(e, newMatchTTL(0));
  CHECK(matchTTLGet(m) == 64);
  deleteMatch(m);

  a = read_action(e, newActionCopyToCpuCancel());
  CHECK(actionGetType(a) == FILTERS_ACTION_COPY_TO_CPU_CANCEL);
  CHECK(actionCopyToCpuCancelGetTypeOfCancel(a) == SWITCH_TO_CPU_CANCEL);
  deleteAction(a);
  a = read_action(e, newActionSetPcpAndQueue(0));
  CHECK(actionSetPcpAndQueueGetPcpAndQueue(a) == 0x35);
  deleteAction(a);
  {
    void* present[] = {
        newActionDeny(),
        newActionRedirect(0),
        newReplaceDstMac(mac_of(0, 0, 0, 0, 0, 0)),
        newReplaceSrcMac(mac_of(0, 0, 0, 0, 0, 0)),
        newActionBlockEgressPorts(NULL, 0),
        newActionMplsPortSet(limid_make(limid_type_mpls_vpws, 1), eth(1)),
        newActionCopyToCpu(),
        newActionRedirectCancel(),
        newActionCopyInnerPcp()};
    size_t i;
    for (i = 0; i < sizeof present / sizeof present[0]; ++i) {
      CHECK(filtersEntryGetAction(e, present[i]) == FILTERS_OK);
      deleteAction(present[i]);
    }
  }
  a = newActionPermit();
  CHECK(filtersEntryGetAction(e, a) == FILTERS_ERR_NOT_FOUND);
  deleteAction(a);
}

static void check_ipv4_group(void) {
  FiltersGroup* g = build_ipv4_group();
  entriesStruct record;
  int32_t i;

  CHECK(filtersGroupGetId(g) == 10);
  CHECK(filtersGroupGetPriority(g) == 5);
  CHECK(filtersGroupGetStage(g) == FILTERS_STAGE_LOOKUP);
  CHECK(filtersGroupGetType(g) == FILTERS_TYPE_IPV4_L4);
  /* Type 3 is not allowed in the egress stage: the stage stays. */
  filtersGroupSetStage(g, FILTERS_STAGE_EGRESS);
  CHECK(filtersGroupGetStage(g) == FILTERS_STAGE_LOOKUP);

  filtersGroupGetEntries(g, &record);
  /* The copies outlive the group. */
  deleteFiltersGroup(g);

  CHECK(record.count == 3);
  if (record.count == 3) {
    CHECK(record.ids[0] == 10 && record.ids[1] == 20 && record.ids[2] == 30);
    for (i = 0; i < record.count; ++i) {
      CHECK(filtersEntryGetId(record.entries[i]) == record.ids[i]);
    }
    check_entry_10(record.entries[0]);
    {
      void* m = read_match(record.entries[1], newMatchAll());
      CHECK(matchGetType(m) == FILTERS_MATCH_ALL);
      deleteMatch(m);
    }
    check_entry_30(record.entries[2]);
  }
  deleteFiltersEntriesStruct(&record);
}

/* Group 20: stage 2, type 13 (CPU traffic with forwarding type), one entry
 * with the kinds only the main stage allows. */
static void check_cpu_group(void) {
  FiltersGroup* g = newFiltersGroup(20);
  FiltersEntry* e = newFiltersEntry(1);
  entriesStruct record;
  const struct ether_addr mac = mac_of(0x00, 0x11, 0x22, 0x33, 0x44, 0x55);
  const struct ether_addr mask = mac_of(0xFF, 0xFF, 0xFF, 0, 0, 0);
  vlan_info_t info;
  info.svcVlanType = 3;
  info.protoCpuVlanType = 4;

  filtersGroupSetStage(g, FILTERS_STAGE_INGRESS);
  CHECK(filtersGroupGetStage(g) == FILTERS_STAGE_INGRESS);
  CHECK(filtersGroupSetType(g, FILTERS_TYPE_CPU_FORWARD) == FILTERS_OK);
  {
    void* matches[] = {newMatchDstMacMask(mac, mask), newMatchVlanInfo(info),
                       newMatchCPUInjectedPackets(true),
                       newMatchDstL4PortRange(1000, 2000)};
    void* actions[] = {newActionMapToCpuCosQueue(6), newActionDoNotLearnMac()};
    fill_entry(e, matches, 4, actions, 2);
  }
  CHECK(filtersGroupInsertEntry(g, e) == FILTERS_OK);
  deleteFiltersEntry(e);

  filtersGroupGetEntries(g, &record);
  CHECK(record.count == 1);
  if (record.count == 1) {
    void* m;
    void* a;
    e = record.entries[0];
    m = read_match(e, newMatchDstMac(mac_of(0, 0, 0, 0, 0, 0)));
    CHECK(memcmp(matchMacGetMac(m), &mac, 6) == 0);
    CHECK(memcmp(matchMacGetMask(m), &mask, 6) == 0);
    deleteMatch(m);
    m = read_match(e, newMatchVlanInfo(info));
    CHECK(matchVlanInfoGet(m).svcVlanType == 3);
    CHECK(matchVlanInfoGet(m).protoCpuVlanType == 4);
    deleteMatch(m);
    m = read_match(e, newMatchCPUInjectedPackets(false));
    CHECK(MatchCPUInjectedPacketsGet(m));
    deleteMatch(m);
    m = read_match(e, newMatchDstL4PortRange(0, 0));
    CHECK(matchGetL4PortRangeMin(m) == 1000);
    CHECK(matchGetL4PortRangeMax(m) == 2000);
    deleteMatch(m);
    a = read_action(e, newActionMapToCpuCosQueue(0));
    CHECK(actionGetType(a) == FILTERS_ACTION_MAP_TO_CPU_COS_QUEUE);
    deleteAction(a);
    a = read_action(e, newActionDoNotLearnMac());
    deleteAction(a);
  }
  deleteFiltersEntriesStruct(&record);

  /* An empty group gives an empty record that still has to be released. */
  CHECK(filtersGroupRemoveEntry(g, 1) == FILTERS_OK);
  filtersGroupGetEntries(g, &record);
  CHECK(record.count == 0);
  deleteFiltersEntriesStruct(&record);
  deleteFiltersGroup(g);
}

/* The remaining kinds, held by one entry outside any group and read back from
 * a copy of it. */
static void check_other_kinds(void) {
  FiltersEntry* original = newFiltersEntry(77);
  FiltersEntry* e;
  const limid_t egress[] = {eth(6)};
  const struct ether_addr src = mac_of(0x00, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE);
  const struct in6_addr v6 = ipv6_of(0, 0x42);
  const struct in6_addr v6_mask = ipv6_of(1, 0);
  const limid_t lag = limid_make(limid_type_lag, 3);
  void* m;
  {
    void* matches[] = {newMatchSrcMac(src),
                       newMatchL2SrcEntryType(L2_SRC_ENTRY_STATIC),
                       newMatchPacketRes(PKT_RES_L2_BROADCAST),
                       newMatchMplsTerm(true),
                       newMatchIngressStpState(STP_STATE_FORWARDING),
                       newMatchDrop(true),
                       newMatchCpuPort(),
                       newMatchInternalVlanId(200),
                       newMatchVirtualPort(lag),
                       newMatchEgressPorts(egress, 1),
                       newMatchPcp(3),
                       newMatchInternalPcp(4),
                       newMatchVlanTagging(VLAN_TAGGING_SINGLE_TAGGED),
                       newMatchSrcPort(eth(8)),
                       newMatchSrcIPv6(v6),
                       newMatchDstIPv6Mask(v6, v6_mask),
                       newMatchVrfId(1000),
                       newMatchDSCP(46),
                       newMatchUnknownDestIp(),
                       newMatchL2DestHit(true),
                       newMatchL3SrcRouteHit(true),
                       newMatchVirtualPortClass(0xC0FFEE),
                       newMatchSrcL4Port(22)};
    fill_entry(original, matches, (int)(sizeof matches / sizeof matches[0]),
               NULL, 0);
  }
  /* IPv4 beside IPv6 is refused, and the refusal changes nothing. */
  m = newMatchSrcIPv4(ipv4_of(1, 1, 1, 1));
  CHECK(filtersEntrySetMatch(original, m) == FILTERS_ERR_INVALID);
  CHECK(filtersEntryGetMatch(original, m) == FILTERS_ERR_NOT_FOUND);
  deleteMatch(m);

  e = copyFiltersEntry(original);
  deleteFiltersEntry(original);
  CHECK(filtersEntryGetId(e) == 77);

  m = read_match(e, newMatchSrcMac(mac_of(0, 0, 0, 0, 0, 0)));
  CHECK(memcmp(matchMacGetMac(m), &src, 6) == 0);
  deleteMatch(m);
  m = read_match(e, newMatchL2SrcEntryType(L2_SRC_ENTRY_NOT_FOUND));
  CHECK(matchGetL2SrcEntryType(m) == L2_SRC_ENTRY_STATIC);
  deleteMatch(m);
  m = read_match(e, newMatchPacketRes(PKT_RES_UNKNOWN));
  CHECK(matchPacketResGet(m) == PKT_RES_L2_BROADCAST);
  deleteMatch(m);
  m = read_match(e, newMatchMplsTerm(false));
  CHECK(matchMplsTermGet(m));
  deleteMatch(m);
  m = read_match(e, newMatchIngressStpState(STP_STATE_DISABLED));
  CHECK(matchIngressStpStateGet(m) == STP_STATE_FORWARDING);
  deleteMatch(m);
  m = read_match(e, newMatchDrop(false));
  CHECK(matchDropGet(m));
  deleteMatch(m);
  m = read_match(e, newMatchVirtualPort(0));
  CHECK(matchGetLimId(m) == lag);
  deleteMatch(m);
  m = read_match(e, newMatchSrcPort(0));
  CHECK(matchGetLimId(m) == eth(8));
  deleteMatch(m);
  m = read_match(e, newMatchSrcIPv6(ipv6_of(0, 0)));
  CHECK(memcmp(matchIPv6GetIPv6(m), &v6, 16) == 0);
  CHECK(memcmp(matchIPv6GetIPv6Mask(m), &v6_mask, 16) == 0);
  deleteMatch(m);
  m = read_match(e, newMatchDstIPv6(ipv6_of(0, 0)));
  CHECK(memcmp(matchIPv6GetIPv6(m), &v6, 16) == 0);
  deleteMatch(m);
  m = read_match(e, newMatchVrfId(0));
  CHECK(matchVrfIdGet(m) == 1000);
  deleteMatch(m);
  m = read_match(e, newMatchDSCP(0));
  CHECK(matchGetType(m) == FILTERS_MATCH_TOS);
  CHECK(matchDSCPGet(m) == 46);
  deleteMatch(m);
  m = read_match(e, newMatchL2DestHit(false));
  CHECK(matchL2DestHitGet(m));
  deleteMatch(m);
  m = read_match(e, newMatchL3SrcRouteHit(false));
  CHECK(matchL3SrcRouteHitGet(m));
  deleteMatch(m);
  m = read_match(e, newMatchVirtualPortClass(0));
  CHECK(matchVirtualPortClassGet(m) == 0xC0FFEE);
  deleteMatch(m);
  m = read_match(e, newMatchSrcL4Port(0));
  CHECK(matchGetL4Port(m) == 22);
  deleteMatch(m);
  {
    /* Kinds without a C getter: present, and of the right kind. */
    void* present[] = {newMatchCpuPort(),
                       newMatchInternalVlanId(0),
                       newMatchEgressPorts(NULL, 0),
                       newMatchPcp(0),
                       newMatchInternalPcp(0),
                       newMatchVlanTagging(VLAN_TAGGING_UNTAGGED),
                       newMatchUnknownDestIp()};
    size_t i;
    for (i = 0; i < sizeof present / sizeof present[0]; ++i) {
      filtersMatch_t kind = matchGetType(present[i]);
      CHECK(filtersEntryGetMatch(e, present[i]) == FILTERS_OK);
      CHECK(matchGetType(present[i]) == kind);
      CHECK(filtersEntryDeleteMatch(e, kind) == FILTERS_OK);
      CHECK(filtersEntryDeleteMatch(e, kind) == FILTERS_ERR_NOT_FOUND);
      deleteMatch(present[i]);
    }
  }
  CHECK(filtersEntryDeleteAction(e, FILTERS_ACTION_DENY) ==
        FILTERS_ERR_NOT_FOUND);
  deleteFiltersEntry(e);
}

int main(void) {
  check_ipv4_group();
  check_cpu_group();
  check_other_kinds();
  return c_check_exit_status("all C interface checks passed");
}
