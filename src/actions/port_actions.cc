// The kinds that carry port lists: ActionPorts with ActionBlockEgressPorts on
// it, and ActionRedirect. Both put the raw limid_t values on the wire, one
// ports_ element per port in list order; they differ in that a block-egress
// load appends to the list held while a redirect load replaces it.
#include "FiltersCommon/filter_actions.h"
#include "actions/action_dump.h"
#include "filter_actions.pb.h"

namespace FiltersCommon {
namespace {

void portsToWire(const Action& action, const std::list<limid_t>& ports,
                 ActionPB* pb) {
  action.Action::convertToActionPB(pb);
  for (limid_t port : ports) pb->add_ports_(port);
}

void appendPortsFromWire(const ActionPB* pb, std::list<limid_t>* ports) {
  ports->insert(ports->end(), pb->ports_().begin(), pb->ports_().end());
}

// A double quote, the port's interface name, a double quote and a space.
std::ostream& writeQuotedPort(std::ostream& os, limid_t port) {
  char name[100];
  action_dump::interfaceName(port, name);
  return os << '"' << name << "\" ";
}

}  // namespace

ActionPorts::ActionPorts(filtersAction_t type, const std::list<limid_t>& ports)
    : Action(type), ports_(ports) {}

ActionBlockEgressPorts::ActionBlockEgressPorts(const std::list<limid_t>& ports)
    : ActionPorts(FILTERS_ACTION_BLOCK_EGRESS_PORTS, ports) {}

void ActionBlockEgressPorts::convertToActionPB(ActionPB* pb) const {
  portsToWire(*this, getPorts(), pb);
}

void ActionBlockEgressPorts::convertFromActionPB(ActionPB const* pb) {
  appendPortsFromWire(pb, &mutablePorts());
}

ActionRedirect::ActionRedirect(limid_t port)
    : Action(FILTERS_ACTION_REDIRECT), ports_{port} {}

void ActionRedirect::convertToActionPB(ActionPB* pb) const {
  portsToWire(*this, ports_, pb);
}

void ActionRedirect::convertFromActionPB(ActionPB const* pb) {
  ports_.clear();
  appendPortsFromWire(pb, &ports_);
}

bool ActionRedirect::operator==(const ActionRedirect& other) const {
  return ports_ == other.ports_;
}

namespace action_dump {

// The port lines of the list, then the empty line that sets this kind's dump
// apart from every other.
std::ostream& writeBlockEgressPorts(std::ostream& os,
                                    const ActionPorts& action) {
  writeHeader(os, action);
  ::operator<<(os, action);
  return os << std::endl;
}

}  // namespace action_dump
}  // namespace FiltersCommon

std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionPorts& action) {
  const std::list<limid_t> ports = action.getPorts();
  FiltersCommon::action_dump::writeLine(os, "Number of ports", ports.size());
  os << "      LIMIDs: ";
  for (limid_t port : ports) FiltersCommon::writeQuotedPort(os, port);
  return os << std::endl;
}

std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionBlockEgressPorts& action) {
  return FiltersCommon::action_dump::writeBlockEgressPorts(os, action);
}

// All targets on one line, each with its own six-space indent.
std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionRedirect& action) {
  FiltersCommon::action_dump::writeHeader(os, action);
  for (limid_t port : action.getRedirectPortsRef()) {
    FiltersCommon::writeQuotedPort(os << "      ", port);
  }
  return os << std::endl;
}
