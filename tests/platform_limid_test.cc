// Logical interface identifiers: layout, bridge domains, ifindex mapping and
// interface names, in both directions.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "limid/limid.h"

namespace {

static_assert(sizeof(limid_type_t) == 1, "the type code is one byte");
static_assert(sizeof(limid_t) == 4, "an identifier is 32 bits");

constexpr uint32_t kMaxIndex = 0xFFFFFF;
constexpr uint32_t kMaxBdIndex = 0xFFFFF;
constexpr limid_t kUntouched = 0xDEADBEEF;

const limid_type_t kValidTypes[] = {limid_type_ethernet, limid_type_lag,
                                    limid_type_mpls_vpws,
                                    limid_type_bridgedomain, limid_type_cpu};

// The name limid_to_intfname writes into a roomy buffer, or "<failed>".
std::string NameOf(limid_t limid) {
  char buf[32];
  std::memset(buf, 'x', sizeof(buf));
  if (limid_to_intfname(limid, buf, sizeof(buf)) != 0) {
    EXPECT_STREQ(buf, "") << "a failed call must leave an empty string";
    return "<failed>";
  }
  return buf;
}

TEST(LimidLayout, MakePutsTypeInTopByteAndIndexBelow) {
  EXPECT_EQ(limid_make(limid_type_lag, 7), 0x02000007u);
  EXPECT_EQ(limid_make(limid_type_cpu, kMaxIndex), 0x05FFFFFFu);
  EXPECT_EQ(limid_make(limid_type_invalid, 0), 0u);
}

TEST(LimidLayout, MakeDropsIndexBitsAboveTwentyFour) {
  EXPECT_EQ(limid_make(limid_type_ethernet, 0xAB123456), 0x01123456u);
}

TEST(LimidLayout, GettersReadTypeAndIndex) {
  limid_t l = 0x03ABCDEF;
  EXPECT_EQ(limid_get_type(l), limid_type_mpls_vpws);
  EXPECT_EQ(limid_get_index(l), 0xABCDEFu);
  EXPECT_EQ(limid_get_type(0xFF000000), 0xFF);
  EXPECT_EQ(limid_get_index(0xFF000000), 0u);
}

TEST(LimidLayout, IsFromTypeComparesTypeCodeOnly) {
  limid_t lag = limid_make(limid_type_lag, 3);
  EXPECT_TRUE(limid_is_from_type(lag, limid_type_lag));
  EXPECT_FALSE(limid_is_from_type(lag, limid_type_ethernet));
  EXPECT_FALSE(limid_is_from_type(lag, limid_type_invalid));
  EXPECT_TRUE(limid_is_from_type(0, limid_type_invalid));
}

TEST(LimidLayout, IsFromTypeEthernet) {
  EXPECT_TRUE(limid_is_from_type_ethernet(limid_make(limid_type_ethernet, 0)));
  EXPECT_TRUE(
      limid_is_from_type_ethernet(limid_make(limid_type_ethernet, kMaxIndex)));
  EXPECT_FALSE(limid_is_from_type_ethernet(limid_make(limid_type_lag, 1)));
  EXPECT_FALSE(limid_is_from_type_ethernet(limid_make(limid_type_cpu, 1)));
}

TEST(LimidCompare, FollowsUnsignedOrder) {
  EXPECT_EQ(limid_compare(5, 5), 0);
  EXPECT_LT(limid_compare(1, 2), 0);
  EXPECT_GT(limid_compare(2, 1), 0);
  // The top bit set is above, not below, every smaller value.
  EXPECT_GT(limid_compare(0x80000000, 1), 0);
  EXPECT_LT(limid_compare(1, 0x80000000), 0);
  EXPECT_GT(limid_compare(0xFFFFFFFF, 0), 0);
  EXPECT_LT(limid_compare(0, 0xFFFFFFFF), 0);
  EXPECT_LT(limid_compare(limid_make(limid_type_ethernet, kMaxIndex),
                          limid_make(limid_type_lag, 0)),
            0);
}

TEST(LimidBridgeDomain, MakeAndSplitRoundTrip) {
  for (uint32_t bd_type :
       {limid_bridgedomain_type_vlan, limid_bridgedomain_type_vpls}) {
    for (uint32_t bd_index : {0u, 1u, 4094u, kMaxBdIndex}) {
      limid_t l = limid_make_bridgedomain(bd_type, bd_index);
      EXPECT_EQ(limid_get_type(l), limid_type_bridgedomain);
      EXPECT_EQ(limid_get_index(l), (bd_type << 20) | bd_index);
      uint32_t got_type = 99;
      uint32_t got_index = 99;
      ASSERT_EQ(limid_to_bridgedomain_components(l, &got_type, &got_index), 0);
      EXPECT_EQ(got_type, bd_type);
      EXPECT_EQ(got_index, bd_index);
    }
  }
}

TEST(LimidBridgeDomain, MakeDropsExcessBits) {
  limid_t l = limid_make_bridgedomain(0x12, 0x123456);
  EXPECT_EQ(l, limid_make(limid_type_bridgedomain, 0x223456));
}

TEST(LimidBridgeDomain, ComponentsOfOtherTypesFailAndLeaveOutputs) {
  for (limid_t l : {limid_make(limid_type_ethernet, 0x100005),
                    limid_make(limid_type_lag, 1), limid_t{0},
                    limid_make(limid_type_cpu, 2), limid_t{0xFF100001}}) {
    uint32_t bd_type = 77;
    uint32_t bd_index = 88;
    EXPECT_EQ(limid_to_bridgedomain_components(l, &bd_type, &bd_index), -1);
    EXPECT_EQ(bd_type, 77u);
    EXPECT_EQ(bd_index, 88u);
  }
}

TEST(LimidIfindex, IsIndexShiftedOverType) {
  uint32_t ifindex = 0;
  ASSERT_EQ(limid_to_ifindex(limid_make(limid_type_lag, 3), &ifindex), 0);
  EXPECT_EQ(ifindex, 0x32u);
  ASSERT_EQ(limid_to_ifindex(limid_make(limid_type_cpu, kMaxIndex), &ifindex),
            0);
  EXPECT_EQ(ifindex, 0xFFFFFF5u);
  ASSERT_EQ(
      limid_to_ifindex(limid_make_bridgedomain(limid_bridgedomain_type_vpls, 9),
                       &ifindex),
      0);
  EXPECT_EQ(ifindex, ((0x200009u) << 4) | 4u);
}

TEST(LimidIfindex, RoundTripsEveryTypeAtIndexLimits) {
  for (limid_type_t type : kValidTypes) {
    for (uint32_t index : {0u, 1u, 12345u, kMaxIndex}) {
      limid_t l = limid_make(type, index);
      uint32_t ifindex = 0;
      ASSERT_EQ(limid_to_ifindex(l, &ifindex), 0);
      EXPECT_EQ(ifindex, (index << 4) | type);
      limid_t back = kUntouched;
      ASSERT_EQ(limid_from_ifindex(ifindex, &back), 0);
      EXPECT_EQ(back, l);
    }
  }
}

TEST(LimidIfindex, InvalidTypesHaveNone) {
  for (limid_t l : {limid_t{0}, limid_t{0x00000005}, limid_t{0x06000001},
                    limid_t{0x0F000000}, limid_t{0xFF123456}}) {
    uint32_t ifindex = 0xABCD;
    EXPECT_EQ(limid_to_ifindex(l, &ifindex), -1) << std::hex << l;
  }
}

TEST(LimidIfindex, FromIfindexRejectsUnknownLowNibble) {
  for (uint32_t nibble = 0; nibble < 16; ++nibble) {
    bool valid = nibble >= 1 && nibble <= 5;
    limid_t out = kUntouched;
    uint32_t ifindex = (42u << 4) | nibble;
    EXPECT_EQ(limid_from_ifindex(ifindex, &out), valid ? 0 : -1) << nibble;
    EXPECT_EQ(out, valid ? limid_make(static_cast<limid_type_t>(nibble), 42)
                         : kUntouched);
  }
}

TEST(LimidIfindex, FromIfindexRejectsValuesOfTwentyEightBitsOrMore) {
  limid_t out = kUntouched;
  EXPECT_EQ(limid_from_ifindex(0x0FFFFFF1, &out), 0);
  EXPECT_EQ(out, limid_make(limid_type_ethernet, kMaxIndex));
  out = kUntouched;
  EXPECT_EQ(limid_from_ifindex(0x10000001, &out), -1);
  EXPECT_EQ(limid_from_ifindex(0xFFFFFFF1, &out), -1);
  EXPECT_EQ(out, kUntouched);
}

TEST(LimidIntfname, NamesEveryType) {
  EXPECT_EQ(NameOf(limid_make(limid_type_ethernet, 0)), "eth0");
  EXPECT_EQ(NameOf(limid_make(limid_type_ethernet, 17)), "eth17");
  EXPECT_EQ(NameOf(limid_make(limid_type_lag, 3)), "lag3");
  EXPECT_EQ(NameOf(limid_make(limid_type_mpls_vpws, 1000)), "vpws1000");
  EXPECT_EQ(NameOf(limid_make(limid_type_cpu, kMaxIndex)), "cpu16777215");
  EXPECT_EQ(NameOf(limid_make_bridgedomain(limid_bridgedomain_type_vlan, 10)),
            "bd10");
  EXPECT_EQ(NameOf(limid_make_bridgedomain(limid_bridgedomain_type_vpls,
                                           kMaxBdIndex)),
            "vpls1048575");
}

TEST(LimidIntfname, InvalidTypeFailsWithEmptyString) {
  for (limid_t l : {limid_t{0}, limid_t{0x00000007}, limid_t{0x06000001},
                    limid_t{0xFF000000}}) {
    EXPECT_EQ(NameOf(l), "<failed>") << std::hex << l;
  }
}

TEST(LimidIntfname, BridgeDomainOfUnknownBdTypeFailsLikeUnknownType) {
  for (uint32_t bd_type : {0u, 3u, 15u}) {
    EXPECT_EQ(NameOf(limid_make_bridgedomain(bd_type, 5)), "<failed>")
        << bd_type;
  }
}

TEST(LimidIntfname, TruncatesAndTerminatesWithinLen) {
  limid_t l = limid_make(limid_type_ethernet, 123);
  char buf[8];
  std::memset(buf, 'x', sizeof(buf));
  EXPECT_EQ(limid_to_intfname(l, buf, 3), 0);
  EXPECT_STREQ(buf, "et");
  EXPECT_EQ(buf[3], 'x') << "nothing written past len";
  EXPECT_EQ(limid_to_intfname(l, buf, 1), 0);
  EXPECT_STREQ(buf, "");
  EXPECT_EQ(limid_to_intfname(l, buf, 7), 0);
  EXPECT_STREQ(buf, "eth123");
}

TEST(LimidIntfname, ZeroLenWritesNothing) {
  char buf[4] = {'x', 'y', 'z', 'w'};
  EXPECT_EQ(limid_to_intfname(limid_make(limid_type_lag, 1), buf, 0), 0);
  EXPECT_EQ(limid_to_intfname(0, buf, 0), -1);
  EXPECT_EQ(buf[0], 'x');
  EXPECT_EQ(limid_to_intfname(limid_make(limid_type_lag, 1), nullptr, 0), 0);
}

TEST(LimidIntfname, RoundTripsEveryTypeAtIndexLimits) {
  std::vector<limid_t> all;
  for (limid_type_t type : kValidTypes) {
    if (type == limid_type_bridgedomain) continue;
    for (uint32_t index : {0u, 9u, 10u, 999999u, kMaxIndex}) {
      all.push_back(limid_make(type, index));
    }
  }
  for (uint32_t bd_type :
       {limid_bridgedomain_type_vlan, limid_bridgedomain_type_vpls}) {
    for (uint32_t bd_index : {0u, 7u, 4095u, kMaxBdIndex}) {
      all.push_back(limid_make_bridgedomain(bd_type, bd_index));
    }
  }
  for (limid_t l : all) {
    std::string name = NameOf(l);
    ASSERT_NE(name, "<failed>") << std::hex << l;
    limid_t back = kUntouched;
    ASSERT_EQ(limid_from_intfname(name.c_str(), &back), 0) << name;
    EXPECT_EQ(back, l) << name;
  }
}

TEST(LimidIntfname, FromIntfnameRejectsAnythingItDoesNotWrite) {
  const char* const kGarbage[] = {"",
                                  "eth",
                                  "lag",
                                  "bd",
                                  "vpls",
                                  "eth-1",
                                  "eth+1",
                                  "eth 1",
                                  " eth1",
                                  "eth1 ",
                                  "eth1x",
                                  "eth1.0",
                                  "ETH1",
                                  "Eth1",
                                  "eth01",
                                  "lag00",
                                  "eth0x10",
                                  "ethernet1",
                                  "x1",
                                  "1",
                                  "vpw1",
                                  "vplss1",
                                  "cpu-0",
                                  "bd1048576",
                                  "vpls1048576",
                                  "eth16777216",
                                  "cpu4294967296",
                                  "lag99999999999999999999",
                                  "eth1\t"};
  for (const char* name : kGarbage) {
    limid_t out = kUntouched;
    EXPECT_EQ(limid_from_intfname(name, &out), -1) << "'" << name << "'";
    EXPECT_EQ(out, kUntouched) << "'" << name << "'";
  }
  limid_t out = kUntouched;
  EXPECT_EQ(limid_from_intfname(nullptr, &out), -1);
  EXPECT_EQ(out, kUntouched);
}

TEST(LimidIntfname, FromIntfnameReadsLargestIndexes) {
  limid_t out = 0;
  ASSERT_EQ(limid_from_intfname("eth16777215", &out), 0);
  EXPECT_EQ(out, limid_make(limid_type_ethernet, kMaxIndex));
  ASSERT_EQ(limid_from_intfname("bd1048575", &out), 0);
  EXPECT_EQ(out,
            limid_make_bridgedomain(limid_bridgedomain_type_vlan, kMaxBdIndex));
  ASSERT_EQ(limid_from_intfname("vpws0", &out), 0);
  EXPECT_EQ(out, limid_make(limid_type_mpls_vpws, 0));
}

}  // namespace
