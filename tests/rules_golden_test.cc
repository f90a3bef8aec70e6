// A realistic rule file (tests/data/edge_acl.rules): the group it describes,
// built through the C++ interface, prints exactly as the file, and the file
// compiles to exactly that group.

#include <gtest/gtest.h>

#include <arpa/inet.h>

#include <fstream>
#include <iterator>
#include <string>

#include "FiltersCommon/filter_rules.h"
#include "FiltersCommon/filters_common.h"

#ifndef RULES_TEST_DATA_DIR
#error "RULES_TEST_DATA_DIR must name tests/data"
#endif

namespace {

using namespace FiltersCommon;

std::string golden() {
  std::ifstream file(RULES_TEST_DATA_DIR "/edge_acl.rules");
  return std::string(std::istreambuf_iterator<char>(file), {});
}

in_addr ip(const char* text) {
  in_addr a{};
  inet_pton(AF_INET, text, &a);
  return a;
}

limid_t eth(uint32_t n) { return limid_make(limid_type_ethernet, n); }

// An ingress ACL of an edge switch: management access, blocked legacy
// protocols, a web redirect, trapped routing protocol traffic, rate-limited
// voice, and a default deny.
FiltersGroup edgeAcl() {
  FiltersGroup group(100);
  group.setPriority(10);
  EXPECT_EQ(group.setStage(FILTERS_STAGE_INGRESS), FILTERS_OK);
  EXPECT_EQ(group.setType(FILTERS_TYPE_IPV4_L4), FILTERS_OK);
  const auto insert = [&](const FiltersEntry& entry) {
    EXPECT_EQ(group.insertEntry(entry), FILTERS_OK) << entry.getId();
  };

  FiltersEntry ssh(10);
  ssh.setPriority(1000);
  ssh.setMatch(MatchIngressPorts(std::list<limid_t>{eth(1), eth(2)}));
  ssh.setMatch(MatchDstL4Port(22));
  ssh.setMatch(MatchSrcIPv4(ip("10.0.0.0"), ip("255.0.0.0")));
  ssh.setMatch(MatchIpProtocol(6));
  ssh.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
  ssh.setAction(ActionPermit());
  insert(ssh);

  FiltersEntry telnet(20);
  telnet.setPriority(900);
  telnet.setMatch(MatchDstL4Port(23));
  telnet.setMatch(MatchIpProtocol(6));
  telnet.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
  telnet.setAction(ActionDeny());
  insert(telnet);

  FiltersEntry web(30);
  web.setPriority(800);
  web.setMatch(
      MatchExternalVlanId(std::set<uint16_t>{100, 200, 201, 202, 203}));
  web.setMatch(MatchDstL4Port(80));
  web.setMatch(MatchSrcIPv4(ip("192.0.2.0"), ip("255.255.255.0")));
  web.setMatch(MatchDstIPv4(ip("198.51.100.10")));
  web.setMatch(MatchIpProtocol(6));
  web.setAction(ActionRedirect(eth(5)));
  insert(web);

  FiltersEntry routing(40);
  routing.setPriority(700);
  routing.setMatch(MatchIngressPorts(std::list<port_type_t>{CPU_PORT}));
  routing.setMatch(MatchSrcL4Port(1024, 0xFC00));
  routing.setMatch(MatchDstIPv4(ip("10.1.2.3"), ip("255.0.255.0")));
  routing.setMatch(MatchIpProtocol(17));
  routing.setMatch(MatchTTL(1));
  routing.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
  routing.setCounter(Counter(2, COUNTER_TYPE_OCTETS));
  routing.setAction(ActionCopyToCpu());
  routing.setAction(ActionMapToCpuCosQueue(3));
  insert(routing);

  FiltersEntry voice(50);
  voice.setPriority(600);
  voice.setMatch(MatchTPID(0x8100));
  voice.setMatch(MatchMyStationHit(true));
  voice.setMatch(MatchForwardingType(FORWARDING_TYPE_L3_ROUTED));
  voice.setPolicer(
      policer::Policer(7, policer::STAGE_INGRESS,
                       policer::Mode::TrTcm(10000, 20000, 50000, 100000),
                       {policer::Action::SetDscp(policer::COLOR_YELLOW, 10),
                        policer::Action::Drop(policer::COLOR_RED)}));
  voice.setAction(ActionSetDSCP(46));
  voice.setAction(ActionMapToCosQueue(5));
  insert(voice);

  FiltersEntry toCpu(60);
  toCpu.setPriority(500);
  toCpu.setMatch(MatchDestinationCpu());
  toCpu.setAction(ActionL3Switch(42));
  insert(toCpu);

  FiltersEntry rest(1000);
  rest.setPriority(1);
  rest.setMatch(MatchAll());
  rest.setCounter(Counter(9, COUNTER_TYPE_OCTETS));
  rest.setAction(ActionDeny());
  insert(rest);
  return group;
}

TEST(RulesGolden, TheGroupPrintsExactlyAsTheGoldenFile) {
  EXPECT_EQ(formatGroupRules(edgeAcl()), golden());
}

TEST(RulesGolden, TheGoldenFileCompilesToTheGroup) {
  std::vector<RuleError> errors;
  const auto group = compileGroupRules(golden(), "edge_acl.rules", &errors);
  ASSERT_NE(group, nullptr) << errors.at(0).toString();
  EXPECT_TRUE(*group == edgeAcl());
}

}  // namespace
