#include "demo_group.h"

#include <arpa/inet.h>

#include <filesystem>
#include <list>
#include <utility>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_counter.h"
#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_matches.h"
#include "FiltersCommon/filter_names.h"
#include "limid/limid.h"
#include "policer/policer.h"
#include "tool_input.h"

namespace filters_tool {

namespace {

using namespace FiltersCommon;  // NOLINT(build/namespaces): a list of rules.

constexpr uint8_t kTcp = 6;
constexpr uint8_t kUdp = 17;

limid_t eth(uint32_t index) { return limid_make(limid_type_ethernet, index); }

in_addr ipv4(const char* text) {
  in_addr address{};
  inet_pton(AF_INET, text, &address);
  return address;
}

// An entry with `id` and `priority`, and a packet counter with id 1.
FiltersEntry counted(filtersEntryId_t id, filtersEntryPriority_t priority) {
  FiltersEntry entry(id);
  entry.setPriority(priority);
  entry.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
  return entry;
}

}  // namespace

FiltersGroup demoGroupHead() {
  FiltersGroup group(100);
  group.setPriority(10);
  group.setStage(FILTERS_STAGE_INGRESS);
  group.setType(FILTERS_TYPE_IPV4_L4);
  return group;
}

std::vector<DemoEntry> demoEntries() {
  std::vector<DemoEntry> rules;

  FiltersEntry ssh = counted(10, 100);
  ssh.setMatch(MatchIngressPorts(std::list<limid_t>{eth(1), eth(2)}));
  ssh.setMatch(MatchSrcIPv4(ipv4("10.0.0.0"), ipv4("255.0.0.0")));
  ssh.setMatch(MatchIpProtocol(kTcp));
  ssh.setMatch(MatchDstL4Port(22));
  ssh.setAction(ActionPermit());
  rules.push_back(
      {"permit SSH from 10.0.0.0/8 on eth1 and eth2", std::move(ssh)});

  FiltersEntry telnet = counted(20, 90);
  telnet.setMatch(MatchIpProtocol(kTcp));
  telnet.setMatch(MatchDstL4Port(23));
  telnet.setAction(ActionDeny());
  rules.push_back({"deny Telnet from anywhere", std::move(telnet)});

  FiltersEntry web = counted(30, 80);
  web.setMatch(MatchExternalVlanId(100));
  web.setMatch(MatchDstIPv4(ipv4("192.0.2.10")));
  web.setMatch(MatchIpProtocol(kTcp));
  web.setMatch(MatchDstL4Port(80));
  web.setAction(ActionRedirect(eth(5)));
  rules.push_back({"redirect web traffic for 192.0.2.10 on VLAN 100 to eth5",
                   std::move(web)});

  // Voice: a priority and a queue, metered at 2 Mbit/s; red packets drop.
  FiltersEntry voice = counted(40, 70);
  voice.setCounter(Counter(2, COUNTER_TYPE_RED_OCTETS));
  voice.setMatch(MatchExternalVlanId(200));
  voice.setMatch(MatchIpProtocol(kUdp));
  voice.setMatch(MatchSrcL4Port(5060));
  voice.setAction(ActionSetPcp(5));
  voice.setAction(ActionMapToCosQueue(5));
  voice.setPolicer(policer::Policer(
      1, policer::STAGE_INGRESS, policer::Mode::SrTcm(2000, 16000, 32000),
      {policer::Action::Drop(policer::COLOR_RED)}));
  rules.push_back(
      {"voice (UDP 5060) on VLAN 200: PCP 5, queue 5, policed to 2 Mbit/s",
       std::move(voice)});

  FiltersEntry rest(50);
  rest.setPriority(1);
  rest.setMatch(MatchAll());
  rest.setAction(ActionPermit());
  rules.push_back({"permit everything else", std::move(rest)});
  return rules;
}

int runDemo(const std::string& path, const std::string& program,
            std::ostream& out) {
  FiltersGroup group = demoGroupHead();
  const std::vector<DemoEntry> rules = demoEntries();
  out << "1. Built filter group " << group.getId() << " (priority "
      << group.getPriority() << ") in stage " << group.getStage()
      << " (ingress), type " << group.getType()
      << " (IPv4 addresses, L4 ports, ingress ports, VLAN), with "
      << rules.size() << " entries.\n\n"
      << "2. Inserted each entry; insertEntry checks its matches against "
         "the type, its actions and policer against the stage:\n";
  bool refused = false;
  for (const DemoEntry& rule : rules) {
    const filtersErr_t code = group.insertEntry(rule.entry);
    out << "   entry " << rule.entry.getId() << ", " << rule.purpose
        << ": insertEntry returned " << code << " (" << filtersErrName(code)
        << ")\n";
    if (code != FILTERS_OK) {
      out << "      " << explainEntry(group, rule.entry).message << '\n';
      refused = true;
    }
  }
  if (refused) {
    out << "The demo group refused an entry; stopping.\n";
    return 1;
  }

  std::string bytes;
  group.serialize(&bytes);
  writeOutput(path, bytes);
  const std::string where =
      std::filesystem::absolute(path).lexically_normal().string();
  out << "\n3. Serialized the group (a FiltersGroupPB message, " << bytes.size()
      << " bytes) and wrote it to\n   " << where << "\n\n";

  const FiltersGroup readBack(readInput(path));
  const bool same = readBack == group;
  out << "4. Read the file back into a new group: it is "
      << (same ? "equal" : "NOT equal") << " to the group built ("
      << readBack.getEntriesRef().size() << " of " << rules.size()
      << " entries).\n";
  if (!same) return 1;

  out << "\n5. The group read back, as the library prints it:\n\n"
      << readBack << "\nNext: " << program << " check " << path << "\n      "
      << program << " to-json " << path << "\n      " << program
      << " caps --stage 2 --type 3\n";
  return 0;
}

}  // namespace filters_tool
