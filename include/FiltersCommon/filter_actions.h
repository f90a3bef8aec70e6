// Actions: what the forwarding hardware does with a packet that a filter entry
// matched. Each kind is one small value class derived from Action and reports
// one fixed filtersAction_t; an entry holds at most one action of each kind.
//
// Actions are plain values: copying one copies its fields (port lists deeply),
// and whoever holds an action owns it. Nothing is synchronised: concurrent
// readers of one action are safe, a writer needs exclusive access.
//
// Every action writes itself into, and loads itself from, one ActionPB wire
// message, and prints a line-oriented dump through operator<< (declared after
// the classes). Only ActionMplsPortSet ever throws: std::invalid_argument
// for an identifier of the wrong interface type or an incomplete message.
#ifndef FILTERSCOMMON_FILTER_ACTIONS_H_
#define FILTERSCOMMON_FILTER_ACTIONS_H_

#include <net/ethernet.h>

#include <iosfwd>
#include <list>

#include "FiltersCommon/filter_action_types.h"
#include "FiltersCommon/filter_export.h"
#include "FiltersCommon/filter_types.h"
#include "limid/limid.h"

namespace FiltersCommon {

class ActionPB;

// The polymorphic base of every action kind. It holds only the kind, which
// the subclass fixes at construction. Its conversions write just the kind and
// load nothing, which is all a parameterless kind needs.
class FILTERS_EXPORT Action {
 public:
  explicit Action(filtersAction_t type);
  Action(const Action&) = default;
  virtual ~Action();

  // Sets type_ in `pb`; kinds with parameters add their fields.
  virtual void convertToActionPB(ActionPB* pb) const;
  // Loads the parameters from `pb`. The kind is fixed by the class, so the
  // base has nothing to load and type_ is not read.
  virtual void convertFromActionPB(ActionPB const* pb);

  filtersAction_t getType() const { return type_; }

  // False for different kinds; otherwise the comparison of the kind's own
  // class. Kinds outside the catalogue compare equal: there is nothing else
  // to compare them by.
  bool operator==(const Action& other) const;

 protected:
  // Assignment stays with the subclasses, whose kinds always agree; through a
  // base reference it would change an action's kind.
  Action& operator=(const Action&) = default;

 private:
  filtersAction_t type_;
};

// Lets the packet through.
class FILTERS_EXPORT ActionPermit : public Action {
 public:
  ActionPermit();
  virtual bool operator==(const ActionPermit& other) const;
};

// Drops the packet.
class FILTERS_EXPORT ActionDeny : public Action {
 public:
  ActionDeny();
  bool operator==(const ActionDeny&) const { return true; }
};

// Sends a copy of the packet to the CPU.
class FILTERS_EXPORT ActionCopyToCpu : public Action {
 public:
  ActionCopyToCpu();
  bool operator==(const ActionCopyToCpu&) const { return true; }
};

// Common base of the kinds that carry an ordered list of ports (duplicates
// allowed, the caller's order kept). It uses the base conversions; the
// subclass decides how the list travels.
class FILTERS_EXPORT ActionPorts : public Action {
 public:
  ActionPorts(filtersAction_t type, const std::list<limid_t>& ports);

  std::list<limid_t> getPorts() const { return ports_; }

  // Same length and the same ports in the same order.
  bool operator==(const ActionPorts& other) const {
    return ports_ == other.ports_;
  }

 protected:
  std::list<limid_t>& mutablePorts() { return ports_; }

 private:
  std::list<limid_t> ports_;
};

// Keeps the packet from leaving through any of the listed ports.
class FILTERS_EXPORT ActionBlockEgressPorts : public ActionPorts {
 public:
  explicit ActionBlockEgressPorts(const std::list<limid_t>& ports);

  void convertToActionPB(ActionPB* pb) const override;
  // Appends the message's ports to the list already held; loading twice
  // into one object therefore doubles its list.
  void convertFromActionPB(ActionPB const* pb) override;
};

// Takes back a CPU decision of an earlier lookup.
class FILTERS_EXPORT ActionCopyToCpuCancel : public Action {
 public:
  explicit ActionCopyToCpuCancel(cp2cpuCancelParam_t cancelType);

  cp2cpuCancelParam_t getCancelType() const { return cancel_type_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionCopyToCpuCancel& other) const {
    return cancel_type_ == other.cancel_type_;
  }

 private:
  cp2cpuCancelParam_t cancel_type_;
};

// Rewrites the outer VLAN priority. Shares the wire field pcp_ with
// ActionSetInnerPcp; the message's type_ tells them apart.
class FILTERS_EXPORT ActionSetPcp : public Action {
 public:
  explicit ActionSetPcp(unsigned char pcp);

  unsigned char getPcp() const { return pcp_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionSetPcp& other) const {
    return pcp_ == other.pcp_;
  }

 private:
  unsigned char pcp_;
};

// Sets priority and queue from one opaque byte that the hardware splits.
class FILTERS_EXPORT ActionSetPcpAndQueue : public Action {
 public:
  explicit ActionSetPcpAndQueue(unsigned char pcpAndQueue);

  unsigned char getPcpAndQueue() const { return pcp_and_queue_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionSetPcpAndQueue& other) const {
    return pcp_and_queue_ == other.pcp_and_queue_;
  }

 private:
  unsigned char pcp_and_queue_;
};

// Rewrites the inner VLAN priority (wire field pcp_, as ActionSetPcp).
class FILTERS_EXPORT ActionSetInnerPcp : public Action {
 public:
  explicit ActionSetInnerPcp(unsigned char innerPcp);

  unsigned char getInnerPcp() const { return inner_pcp_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionSetInnerPcp& other) const {
    return inner_pcp_ == other.inner_pcp_;
  }

 private:
  unsigned char inner_pcp_;
};

// Rewrites the DSCP. Any byte is stored; the range is the hardware's concern.
class FILTERS_EXPORT ActionSetDSCP : public Action {
 public:
  explicit ActionSetDSCP(unsigned char dscp);

  unsigned char getDSCP() const { return dscp_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionSetDSCP& other) const {
    return dscp_ == other.dscp_;
  }

 private:
  unsigned char dscp_;
};

// Steers the packet to a CoS queue. Shares the wire field cosq_ with
// ActionMapToCpuCosQueue.
class FILTERS_EXPORT ActionMapToCosQueue : public Action {
 public:
  explicit ActionMapToCosQueue(unsigned char cosQueue);

  unsigned char getCosQueue() const { return cos_queue_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  virtual bool operator==(const ActionMapToCosQueue& other) const;

 private:
  unsigned char cos_queue_;
};

// Steers a packet bound for the CPU to a CPU CoS queue (wire field cosq_).
class FILTERS_EXPORT ActionMapToCpuCosQueue : public Action {
 public:
  explicit ActionMapToCpuCosQueue(unsigned char cpuCosQueue);

  unsigned char getCpuCosQueue() const { return cpu_cos_queue_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionMapToCpuCosQueue& other) const {
    return cpu_cos_queue_ == other.cpu_cos_queue_;
  }

 private:
  unsigned char cpu_cos_queue_;
};

// Sends the packet to other logical interfaces instead of its own path. The
// constructor names one target; more arise only from a wire message.
class FILTERS_EXPORT ActionRedirect : public Action {
 public:
  explicit ActionRedirect(limid_t port);

  std::list<limid_t> getRedirectPorts() const { return ports_; }
  const std::list<limid_t>& getRedirectPortsRef() const { return ports_; }

  void convertToActionPB(ActionPB* pb) const override;
  // Replaces the list with the message's ports, so the constructor's target
  // does not survive a load.
  void convertFromActionPB(ActionPB const* pb) override;

  // Same length and the same ports in the same order.
  virtual bool operator==(const ActionRedirect& other) const;

 private:
  std::list<limid_t> ports_;
};

// Rewrites the destination MAC address.
class FILTERS_EXPORT ActionReplaceDstMac : public Action {
 public:
  explicit ActionReplaceDstMac(const ether_addr& mac);

  ether_addr getReplaceDstMac() const { return mac_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  virtual bool operator==(const ActionReplaceDstMac& other) const;

 private:
  ether_addr mac_;
};

// Cancels a redirect decided by an earlier lookup.
class FILTERS_EXPORT ActionRedirectCancel : public Action {
 public:
  ActionRedirectCancel();
  virtual bool operator==(const ActionRedirectCancel& other) const;
};

// Rewrites the source MAC address.
class FILTERS_EXPORT ActionReplaceSrcMac : public Action {
 public:
  explicit ActionReplaceSrcMac(const ether_addr& mac);

  ether_addr getReplaceSrcMac() const { return mac_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  virtual bool operator==(const ActionReplaceSrcMac& other) const;

 private:
  ether_addr mac_;
};

// Routes the packet to an L3 destination.
class FILTERS_EXPORT ActionL3Switch : public Action {
 public:
  explicit ActionL3Switch(unsigned int l3DestinationId);

  unsigned int getL3DestinationId() const { return l3_destination_id_; }

  void convertToActionPB(ActionPB* pb) const override;
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionL3Switch& other) const {
    return l3_destination_id_ == other.l3_destination_id_;
  }

 private:
  unsigned int l3_destination_id_;
};

// Drops the packet silently.
class FILTERS_EXPORT ActionBlackHole : public Action {
 public:
  ActionBlackHole();
  bool operator==(const ActionBlackHole&) const { return true; }
};

// Copies the inner VLAN priority to the outer tag.
class FILTERS_EXPORT ActionCopyInnerPcp : public Action {
 public:
  ActionCopyInnerPcp();
  bool operator==(const ActionCopyInnerPcp&) const { return true; }
};

// Binds the packet to an MPLS VPN (a VPWS interface or a VPLS bridge domain)
// and its access port (a LAG or an Ethernet port). The setters refuse
// identifiers of any other interface type by throwing std::invalid_argument
// and keep the stored value. On the wire both identifiers travel as
// interface indexes, unlike the raw port lists of the other kinds.
class FILTERS_EXPORT ActionMplsPortSet : public Action {
 public:
  // Incomplete until both identifiers are set, by the setters or a load.
  ActionMplsPortSet();
  // Sets the VPN identifier, then the access port; either may throw.
  ActionMplsPortSet(limid_t vpnId, limid_t mplsAccessPort);

  // An incomplete object to load a wire message into.
  static ActionMplsPortSet BuildEmpty();

  void setVpnId(limid_t vpnId);
  void setMplsAccessPort(limid_t mplsAccessPort);

  // Whether `limid` may serve as a VPN identifier: an MPLS VPWS interface,
  // or a bridge domain of the VPLS bridge-domain type.
  bool IsLimidFromVpnType(limid_t limid) const;

  limid_t getVpnId() const { return vpn_id_; }
  limid_t getMplsAccessPort() const { return mpls_access_port_; }

  void convertToActionPB(ActionPB* pb) const override;
  // Throws when either identifier is missing from `pb` (changing nothing) or
  // is of the wrong interface type (as the setters).
  void convertFromActionPB(ActionPB const* pb) override;

  bool operator==(const ActionMplsPortSet& other) const;

 private:
  limid_t vpn_id_;
  limid_t mpls_access_port_;
};

// Sends L2 packets bound for the CPU to the CPU and drops them from the data
// path.
class FILTERS_EXPORT ActionL2ToCpuDrop : public Action {
 public:
  ActionL2ToCpuDrop();
  bool operator==(const ActionL2ToCpuDrop&) const { return true; }
};

// Keeps the packet's source MAC out of the L2 table.
class FILTERS_EXPORT ActionDoNotLearnMac : public Action {
 public:
  ActionDoNotLearnMac();
  bool operator==(const ActionDoNotLearnMac&) const { return true; }
};

}  // namespace FiltersCommon

// Text dumps. Each kind writes a header line with its class name, its kind
// and its parameters, one line each, every line ending in std::endl. The base
// operator dispatches on the kind and writes nothing for a kind outside the
// catalogue. The ActionPorts operator writes only the port lines.
FILTERS_EXPORT std::ostream& operator<<(std::ostream& os,
                                        const FiltersCommon::Action& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionPermit& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionDeny& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionCopyToCpu& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionPorts& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionBlockEgressPorts& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionCopyToCpuCancel& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionSetPcp& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionSetPcpAndQueue& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionSetInnerPcp& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionSetDSCP& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionMapToCosQueue& action);
// Forces the stream to decimal and leaves it so.
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionMapToCpuCosQueue& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionRedirect& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionReplaceDstMac& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionRedirectCancel& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionReplaceSrcMac& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionL3Switch& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionBlackHole& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionCopyInnerPcp& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionMplsPortSet& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionL2ToCpuDrop& action);
FILTERS_EXPORT std::ostream& operator<<(
    std::ostream& os, const FiltersCommon::ActionDoNotLearnMac& action);

// The dump operators live at global scope; this makes them reachable from
// code inside the namespace too, where FiltersCommon's own operator<< would
// otherwise hide them.
namespace FiltersCommon {
using ::operator<<;
}  // namespace FiltersCommon

#endif  // FILTERSCOMMON_FILTER_ACTIONS_H_
