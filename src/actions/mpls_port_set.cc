// ActionMplsPortSet: validation of its two identifiers through the limid
// libraries, and their travel on the wire as interface indexes.
#include <stdexcept>

#include "FiltersCommon/filter_actions.h"
#include "actions/action_dump.h"
#include "filter_actions.pb.h"

namespace FiltersCommon {
namespace {

// A failed conversion gives 0 on either side: ifindex 0 maps to no
// identifier, and identifier 0 is of no interface type, so a broken value is
// refused by the setters when it is read back.
uint32_t toIfindex(limid_t limid) {
  uint32_t ifindex = 0;
  return limid_to_ifindex(limid, &ifindex) == 0 ? ifindex : 0;
}

limid_t fromIfindex(uint32_t ifindex) {
  limid_t limid = 0;
  return limid_from_ifindex(ifindex, &limid) == 0 ? limid : 0;
}

}  // namespace

// The identifiers are meaningless until set; they start as the invalid
// identifier 0 so that an incomplete object still copies and prints safely.
ActionMplsPortSet::ActionMplsPortSet()
    : Action(FILTERS_ACTION_MPLS_PORT_SET), vpn_id_(0), mpls_access_port_(0) {}

ActionMplsPortSet::ActionMplsPortSet(limid_t vpnId, limid_t mplsAccessPort)
    : ActionMplsPortSet() {
  setVpnId(vpnId);
  setMplsAccessPort(mplsAccessPort);
}

ActionMplsPortSet ActionMplsPortSet::BuildEmpty() {
  return ActionMplsPortSet();
}

bool ActionMplsPortSet::IsLimidFromVpnType(limid_t limid) const {
  if (limid_is_from_type(limid, limid_type_mpls_vpws)) return true;
  if (!limid_is_from_type(limid, limid_type_bridgedomain)) return false;
  uint32_t bd_type = 0;
  uint32_t bd_index = 0;
  return limid_to_bridgedomain_components(limid, &bd_type, &bd_index) == 0 &&
         bd_type == limid_bridgedomain_type_vpls;
}

void ActionMplsPortSet::setVpnId(limid_t vpnId) {
  if (!IsLimidFromVpnType(vpnId)) {
    throw std::invalid_argument("ActionMplsPortSet: invalid vpn_id limid type");
  }
  vpn_id_ = vpnId;
}

void ActionMplsPortSet::setMplsAccessPort(limid_t mplsAccessPort) {
  if (!limid_is_from_type(mplsAccessPort, limid_type_lag) &&
      !limid_is_from_type_ethernet(mplsAccessPort)) {
    throw std::invalid_argument(
        "ActionMplsPortSet: invalid mpls_access_port limid type");
  }
  mpls_access_port_ = mplsAccessPort;
}

void ActionMplsPortSet::convertToActionPB(ActionPB* pb) const {
  Action::convertToActionPB(pb);
  pb->set_vpn_id(toIfindex(vpn_id_));
  pb->set_mpls_access_port(toIfindex(mpls_access_port_));
}

void ActionMplsPortSet::convertFromActionPB(ActionPB const* pb) {
  if (!pb->has_vpn_id() || !pb->has_mpls_access_port()) {
    throw std::invalid_argument(
        "ActionMplsPortSet: ActionPB missing vpn_id and mpls_access_port");
  }
  const limid_t vpn_id = fromIfindex(pb->vpn_id());
  const limid_t mpls_access_port = fromIfindex(pb->mpls_access_port());
  setVpnId(vpn_id);
  setMplsAccessPort(mpls_access_port);
}

bool ActionMplsPortSet::operator==(const ActionMplsPortSet& other) const {
  if (limid_compare(mpls_access_port_, other.mpls_access_port_) != 0) {
    return false;
  }
  return limid_compare(vpn_id_, other.vpn_id_) == 0;
}

}  // namespace FiltersCommon

// Both names are looked up before anything is written.
std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::ActionMplsPortSet& action) {
  char vpn_id[64];
  char mpls_access_port[64];
  FiltersCommon::action_dump::interfaceName(action.getVpnId(), vpn_id);
  FiltersCommon::action_dump::interfaceName(action.getMplsAccessPort(),
                                            mpls_access_port);
  FiltersCommon::action_dump::writeHeader(os, action);
  FiltersCommon::action_dump::writeLine(os, "VPN ID", vpn_id);
  return FiltersCommon::action_dump::writeLine(os, "MPLS Access Port",
                                               mpls_access_port);
}
