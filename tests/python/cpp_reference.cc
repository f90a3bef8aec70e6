// What the C++ library makes of the groups the Python tests build: their
// bytes and dumps, printed as hex so that the tests compare them exactly.
//
//   python_cpp_reference samples   one line per match and action class:
//                                  NAME HEX(entry bytes) HEX(entry dump)
//   python_cpp_reference group     HEX(bytes) and HEX(dump) of the group
//                                  below, one per line
//   python_cpp_reference load      reads HEX(group bytes) on stdin, loads the
//                                  group and prints HEX(its bytes) and
//                                  HEX(its dump), one per line
#include <arpa/inet.h>

#include <iostream>
#include <sstream>
#include <string>

#include "FiltersCommon/filters_common.h"
#include "groups_samples.h"

namespace {

using namespace FiltersCommon;

std::string hex(const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string out;
  for (char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    out.push_back(kDigits[byte >> 4]);
    out.push_back(kDigits[byte & 0xF]);
  }
  return out;
}

std::string unhex(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    bytes.push_back(
        static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

template <class T>
std::string dump(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

template <class T>
void printSerialized(const T& value) {
  std::string bytes;
  value.serialize(&bytes);
  std::cout << hex(bytes) << "\n" << hex(dump(value)) << "\n";
}

void printSamples(const std::vector<groups_test::KindSample>& samples) {
  for (const auto& sample : samples) {
    FiltersEntry entry(static_cast<filtersEntryId_t>(sample.kind));
    if (sample.addTo(&entry) != FILTERS_OK) std::abort();
    std::string bytes;
    entry.serialize(&bytes);
    std::cout << sample.name << " " << hex(bytes) << " " << hex(dump(entry))
              << "\n";
  }
}

// An ingress IPv4/L4 group with two entries, counters and policers.
FiltersGroup referenceGroup() {
  FiltersGroup group(42);
  group.setPriority(5);
  if (group.setStage(FILTERS_STAGE_INGRESS) != FILTERS_OK) std::abort();
  if (group.setType(FILTERS_TYPE_IPV4_L4) != FILTERS_OK) std::abort();

  in_addr net{};
  in_addr mask{};
  inet_pton(AF_INET, "10.0.0.0", &net);
  inet_pton(AF_INET, "255.0.0.0", &mask);
  FiltersEntry web(10);
  web.setPriority(100);
  web.setMatch(MatchSrcIPv4(net, mask));
  web.setMatch(MatchDstL4Port(443));
  web.setAction(ActionPermit());
  web.setCounter(Counter(1, COUNTER_TYPE_PACKETS));
  web.setCounter(Counter(2, COUNTER_TYPE_OCTETS));
  web.setPolicer(policer::Policer(
      7, policer::STAGE_INGRESS, policer::Mode::TrTcm(1000, 2000, 3000, 4000),
      {policer::Action::Drop(policer::COLOR_RED),
       policer::Action::SetDscp(policer::COLOR_YELLOW, 10)}));
  web.setPolicerParent(
      policer::Policer(8, policer::STAGE_INGRESS, policer::Mode::Flow(5, 6)));

  in_addr host{};
  inet_pton(AF_INET, "192.168.1.1", &host);
  FiltersEntry block(3);
  block.setPriority(7);
  block.setMatch(MatchDstIPv4(host));
  block.setMatch(MatchTTL(1));
  block.setAction(ActionDeny());
  block.setAction(ActionRedirect(limid_make(limid_type_ethernet, 4)));

  if (group.insertEntry(web) != FILTERS_OK) std::abort();
  if (group.insertEntry(block) != FILTERS_OK) std::abort();
  return group;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "samples") {
    printSamples(groups_test::MatchSamples());
    printSamples(groups_test::ActionSamples());
  } else if (command == "group") {
    printSerialized(referenceGroup());
  } else if (command == "load") {
    std::string text;
    std::getline(std::cin, text);
    printSerialized(FiltersGroup(unhex(text)));
  } else {
    std::cerr << "usage: python_cpp_reference samples|group|load\n";
    return 2;
  }
  return 0;
}
