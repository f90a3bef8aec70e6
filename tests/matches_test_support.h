// Helpers of the match tests: address and interface builders, a dump that
// also records where the stream was flushed, and a factory of neutral
// matches keyed by kind value, as a loader of wire messages builds them.
#ifndef FILTERSCOMMON_TESTS_MATCHES_TEST_SUPPORT_H_
#define FILTERSCOMMON_TESTS_MATCHES_TEST_SUPPORT_H_

#include <arpa/inet.h>
#include <netinet/ether.h>

#include <cstdint>
#include <list>
#include <memory>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "FiltersCommon/filter_matches.h"
#include "limid/limid.h"

namespace matches_test {

using namespace FiltersCommon;  // NOLINT: the tests name every match class.

inline limid_t eth(uint32_t index) {
  return limid_make(limid_type_ethernet, index);
}
inline limid_t lag(uint32_t index) { return limid_make(limid_type_lag, index); }

inline ether_addr mac(char const* text) {
  ether_addr addr{};
  ether_aton_r(text, &addr);
  return addr;
}
inline in_addr ipv4(char const* text) {
  in_addr addr{};
  inet_pton(AF_INET, text, &addr);
  return addr;
}
inline in6_addr ipv6(char const* text) {
  in6_addr addr{};
  inet_pton(AF_INET6, text, &addr);
  return addr;
}

// A string buffer that remembers how much text it held at every flush.
class FlushRecordingBuf : public std::stringbuf {
 public:
  // One letter per line of the text: 'F' when the stream was flushed right
  // after the line's newline, 'B' (bare) when it was not. A flush anywhere
  // else adds a '?'.
  std::string lineEnds() const {
    std::string const text = str();
    std::string ends;
    for (size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '\n') {
        ends += flushedAt(i + 1) ? 'F' : 'B';
      }
    }
    for (size_t offset : flushes_) {
      if (offset == 0 || text[offset - 1] != '\n') {
        ends += '?';
      }
    }
    return ends;
  }

 protected:
  int sync() override {
    flushes_.push_back(str().size());
    return 0;
  }

 private:
  bool flushedAt(size_t offset) const {
    for (size_t flushed : flushes_) {
      if (flushed == offset) {
        return true;
      }
    }
    return false;
  }

  std::vector<size_t> flushes_;
};

struct Dumped {
  std::string text;
  std::string lineEnds;
};

// Prints `m` through the operator<< its static type selects.
template <class T>
Dumped dump(T const& m) {
  FlushRecordingBuf buf;
  std::ostream os(&buf);
  os << m;
  return {buf.str(), buf.lineEnds()};
}

// The class that owns `type`, built with neutral values (zeros, empty
// sets), or null for a value no class owns.
inline std::unique_ptr<Match> newNeutralMatch(uint32_t type) {
  switch (type) {
    // clang-format off
    case 0: return std::make_unique<MatchAll>();
    case 1: return std::make_unique<MatchIngressPorts>(std::list<limid_t>{});
    case 2: return std::make_unique<MatchExternalVlanId>(std::set<uint16_t>{});
    case 3: return std::make_unique<MatchTPID>(0);
    case 4: return std::make_unique<MatchDstMac>(ether_addr{});
    case 5: return std::make_unique<MatchDstL4Port>(0);
    case 6: return std::make_unique<MatchSrcL4Port>(0);
    case 7: return std::make_unique<MatchSrcMac>(ether_addr{});
    case 8: return std::make_unique<MatchL2SrcEntryType>(L2_SRC_ENTRY_NOT_FOUND);
    case 9: return std::make_unique<MatchSrcIPv4>(in_addr{});
    case 10: return std::make_unique<MatchDstIPv4>(in_addr{});
    case 11: return std::make_unique<MatchInternalVlanId>(std::set<uint16_t>{});
    case 12: return std::make_unique<MatchPcp>(std::set<uint8_t>{});
    case 13: return std::make_unique<MatchInternalPcp>(std::set<uint8_t>{});
    case 14: return std::make_unique<MatchSrcIPv6>(in6_addr{});
    case 15: return std::make_unique<MatchDstIPv6>(in6_addr{});
    case 16: return std::make_unique<MatchVlanTagging>(VLAN_TAGGING_UNTAGGED);
    case 17: return std::make_unique<MatchIpProtocol>(0);
    case 18: return std::make_unique<MatchPacketRes>(PKT_RES_UNKNOWN);
    case 19: return std::make_unique<MatchMplsTerm>(false);
    case 20: return std::make_unique<MatchToS>(0);
    case 21: return std::make_unique<MatchVirtualPort>(0);
    case 22: return std::make_unique<MatchEgressPorts>(std::list<limid_t>{});
    case 23: return std::make_unique<MatchIngressStpState>(STP_STATE_DISABLED);
    case 24: return std::make_unique<MatchVlanInfo>(vlan_info_t{});
    case 25: return std::make_unique<MatchSrcPort>(0);
    case 26: return std::make_unique<MatchTTL>(0);
    case 27: return std::make_unique<MatchVrfId>(0);
    case 28: return std::make_unique<MatchDrop>(false);
    case 29: return std::make_unique<MatchMyStationHit>(false);
    case 30: return std::make_unique<MatchCpuPort>();
    case 31: return std::make_unique<MatchForwardingType>(FORWARDING_TYPE_L2_BRIDGED);
    case 32: return std::make_unique<MatchDestinationCpu>();
    case 33: return std::make_unique<MatchCPUInjectedPackets>(false);
    case 34: return std::make_unique<MatchDstL4PortRange>(0, 0);
    case 35: return std::make_unique<MatchL2DestHit>(false);
    case 36: return std::make_unique<MatchL3SrcRouteHit>(false);
    case 37: return std::make_unique<MatchVirtualPortClass>(0);
    case 38: return std::make_unique<MatchUnknownDestIp>();
    default: return nullptr;
      // clang-format on
  }
}

}  // namespace matches_test

#endif  // FILTERSCOMMON_TESTS_MATCHES_TEST_SUPPORT_H_
