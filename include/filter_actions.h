/**
 * Actions: what the switch does with a packet that a rule matches.
 *
 * Every action is an object of a class derived from Action and carries the code of its kind.
 * Objects are plain values; nothing is validated (a PCP of 200 is kept as 200), and after
 * construction only reading from the wire changes them. Assigning one action to another copies the
 * values and never the kind.
 */
#ifndef FILTER_COMMON_FILTER_ACTIONS_H
#define FILTER_COMMON_FILTER_ACTIONS_H

#include "filter_types.h"

#include <net/ethernet.h>

#include <iosfwd>
#include <list>
#include <utility>

#pragma GCC visibility push(default)

namespace FiltersCommon {

class ActionPB;
struct FILTERS_COMMON_INTERNAL ActionFields; // says where the members stand in an ActionPB

/** An action. A bare Action can be built with any code and holds nothing else. */
class Action {
public:
    explicit Action(filtersAction_t type) : type_(type) {}
    Action(const Action&) = default;
    /** Nothing to do: the kind stays. */
    Action& operator=(const Action&) noexcept { return *this; }
    virtual ~Action() = default;

    /** Writes the kind's code and parameters; a bare Action writes the code only. */
    virtual void convertToActionPB(ActionPB* pb) const;

    /**
     * Takes the kind's parameters from @p pb, whose type is neither read nor checked. Numbers are
     * cut to the width of the member; an absent field reads as 0. A MAC address that is too short
     * is filled up with zeros, one that is too long is cut. A bare Action takes nothing.
     */
    virtual void convertFromActionPB(const ActionPB* pb);

    filtersAction_t getType() const { return type_; }

    /**
     * True when both objects are of the same kind and hold the same parameters. Two objects of one
     * code of 17 or above are equal, deliberately unlike matches. False for an object that is not
     * of the class that holds its kind's parameters.
     */
    bool operator==(const Action& other) const;

private:
    const filtersAction_t type_;
};

/** A list of ports in the caller's order, duplicates kept. Converts its code only. */
class ActionPorts : public Action {
public:
    ActionPorts(filtersAction_t type, std::list<limid_t> ports)
        : Action(type), ports_(std::move(ports))
    {}

    ActionPorts(const ActionPorts&) = default;
    ActionPorts(ActionPorts&&) noexcept = default;
    ActionPorts& operator=(const ActionPorts& other);
    ActionPorts& operator=(ActionPorts&& other) noexcept = default;

    std::list<limid_t> getPorts() const { return ports_; }
    /** The list itself, valid while the action lives and is not changed. */
    const std::list<limid_t>& getPortsRef() const { return ports_; }

    using Action::operator==;
    /** The same ports in the same order, whatever the kinds of the two objects. */
    bool operator==(const ActionPorts& other) const;

private:
    friend struct ActionFields;
    std::list<limid_t> ports_;
};

// ------------------------------------------------------------------------ the kinds in code order

/** Let the packet pass. */
class ActionPermit : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_PERMIT;

    ActionPermit() : Action(KIND) {}
    using Action::operator==;
    virtual bool operator==(const ActionPermit&) const { return true; }
};

/** Drop the packet. */
class ActionDeny : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_DENY;

    ActionDeny() : Action(KIND) {}
    using Action::operator==;
    bool operator==(const ActionDeny&) const { return true; }
};

/** Send a copy of the packet to the CPU. */
class ActionCopyToCpu : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_COPY_TO_CPU;

    ActionCopyToCpu() : Action(KIND) {}
    using Action::operator==;
    bool operator==(const ActionCopyToCpu&) const { return true; }
};

/** Keep the packet from leaving by the ports of a list. */
class ActionBlockEgressPorts : public ActionPorts {
public:
    static constexpr filtersAction_t KIND = ACTION_BLOCK_EGRESS_PORTS;

    explicit ActionBlockEgressPorts(std::list<limid_t> ports) : ActionPorts(KIND, std::move(ports))
    {}

    void convertToActionPB(ActionPB* pb) const override;
    /** Appends to the ports that the action holds already, deliberately unlike ActionRedirect. */
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionBlockEgressPorts& other) const
    {
        return ActionPorts::operator==(other);
    }
};

/** Cancel the copying or switching to the CPU. */
class ActionCopyToCpuCancel : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_COPY_TO_CPU_CANCEL;

    explicit ActionCopyToCpuCancel(cp2cpuCancelParam_t cancelType)
        : Action(KIND), cancelType_(cancelType)
    {}

    cp2cpuCancelParam_t getCancelType() const { return cancelType_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionCopyToCpuCancel& other) const
    {
        return cancelType_ == other.cancelType_;
    }

private:
    friend struct ActionFields;
    cp2cpuCancelParam_t cancelType_;
};

/** Set the priority code point. */
class ActionSetPcp : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_PCP;

    explicit ActionSetPcp(unsigned char pcp) : Action(KIND), pcp_(pcp) {}

    unsigned char getPcp() const { return pcp_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionSetPcp& other) const { return pcp_ == other.pcp_; }

private:
    friend struct ActionFields;
    unsigned char pcp_;
};

/** Set the priority code point and the queue: one number, which is never split. */
class ActionSetPcpAndQueue : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_PCP_AND_QUEUE;

    explicit ActionSetPcpAndQueue(unsigned char pcpAndQueue)
        : Action(KIND), pcpAndQueue_(pcpAndQueue)
    {}

    unsigned char getPcpAndQueue() const { return pcpAndQueue_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionSetPcpAndQueue& other) const
    {
        return pcpAndQueue_ == other.pcpAndQueue_;
    }

private:
    friend struct ActionFields;
    unsigned char pcpAndQueue_;
};

/** Set the priority code point of the inner tag. */
class ActionSetInnerPcp : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_INNER_PCP;

    explicit ActionSetInnerPcp(unsigned char innerPcp) : Action(KIND), innerPcp_(innerPcp) {}

    unsigned char getInnerPcp() const { return innerPcp_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionSetInnerPcp& other) const { return innerPcp_ == other.innerPcp_; }

private:
    friend struct ActionFields;
    unsigned char innerPcp_;
};

/** Set the DSCP. */
class ActionSetDSCP : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_DSCP;

    explicit ActionSetDSCP(unsigned char dscp) : Action(KIND), dscp_(dscp) {}

    unsigned char getDSCP() const { return dscp_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionSetDSCP& other) const { return dscp_ == other.dscp_; }

private:
    friend struct ActionFields;
    unsigned char dscp_;
};

/** Put the packet into a class-of-service queue. */
class ActionMapToCosQueue : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_MAP_TO_COS_QUEUE;

    explicit ActionMapToCosQueue(unsigned char cosQueue) : Action(KIND), cosQueue_(cosQueue) {}

    unsigned char getCosQueue() const { return cosQueue_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    virtual bool operator==(const ActionMapToCosQueue& other) const
    {
        return cosQueue_ == other.cosQueue_;
    }

private:
    friend struct ActionFields;
    unsigned char cosQueue_;
};

/** Put the packet into a class-of-service queue of the CPU. */
class ActionMapToCpuCosQueue : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_MAP_TO_CPU_COS_QUEUE;

    explicit ActionMapToCpuCosQueue(unsigned char cpuCosQueue)
        : Action(KIND), cpuCosQueue_(cpuCosQueue)
    {}

    unsigned char getCpuCosQueue() const { return cpuCosQueue_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionMapToCpuCosQueue& other) const
    {
        return cpuCosQueue_ == other.cpuCosQueue_;
    }

private:
    friend struct ActionFields;
    unsigned char cpuCosQueue_;
};

/** Send the packet out of another port; of several, when read from the wire. */
class ActionRedirect : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REDIRECT;

    explicit ActionRedirect(const limid_t& port) : Action(KIND), ports_{port} {}

    ActionRedirect(const ActionRedirect&) = default;
    ActionRedirect(ActionRedirect&&) noexcept = default;
    ActionRedirect& operator=(const ActionRedirect& other);
    ActionRedirect& operator=(ActionRedirect&& other) noexcept = default;

    std::list<limid_t> getRedirectPorts() const { return ports_; }
    /** The list itself, valid while the action lives and is not changed. */
    const std::list<limid_t>& getRedirectPortsRef() const { return ports_; }

    void convertToActionPB(ActionPB* pb) const override;
    /** Replaces the ports. */
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    virtual bool operator==(const ActionRedirect& other) const;

private:
    friend struct ActionFields;
    std::list<limid_t> ports_;
};

/** Replace the destination MAC address. */
class ActionReplaceDstMac : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REPLACE_DST_MAC;

    explicit ActionReplaceDstMac(const ether_addr& mac) : Action(KIND), mac_(mac) {}

    ether_addr getReplaceDstMac() const { return mac_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    virtual bool operator==(const ActionReplaceDstMac& other) const;

private:
    friend struct ActionFields;
    ether_addr mac_;
};

/** Cancel a redirection. */
class ActionRedirectCancel : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REDIRECT_CANCEL;

    ActionRedirectCancel() : Action(KIND) {}
    using Action::operator==;
    virtual bool operator==(const ActionRedirectCancel&) const { return true; }
};

/** Replace the source MAC address. */
class ActionReplaceSrcMac : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REPLACE_SRC_MAC;

    explicit ActionReplaceSrcMac(const ether_addr& mac) : Action(KIND), mac_(mac) {}

    ether_addr getReplaceSrcMac() const { return mac_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    virtual bool operator==(const ActionReplaceSrcMac& other) const;

private:
    friend struct ActionFields;
    ether_addr mac_;
};

/** Hand the packet to layer-3 switching. */
class ActionL3Switch : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_L3_SWITCH;

    explicit ActionL3Switch(unsigned int l3DestinationId)
        : Action(KIND), l3DestinationId_(l3DestinationId)
    {}

    unsigned int getL3DestinationId() const { return l3DestinationId_; }

    void convertToActionPB(ActionPB* pb) const override;
    void convertFromActionPB(const ActionPB* pb) override;
    using Action::operator==;
    bool operator==(const ActionL3Switch& other) const
    {
        return l3DestinationId_ == other.l3DestinationId_;
    }

private:
    friend struct ActionFields;
    unsigned int l3DestinationId_;
};

/** Discard the packet silently. */
class ActionBlackHole : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_BLACK_HOLE;

    ActionBlackHole() : Action(KIND) {}
    using Action::operator==;
    bool operator==(const ActionBlackHole&) const { return true; }
};

/**
 * The class of each kind code, in the order of the codes from 0. Everything that has to be said of
 * each class expands this list.
 */
// clang-format off
#define FILTERS_COMMON_ACTION_CLASSES(X) \
    X(ActionPermit) X(ActionDeny) X(ActionCopyToCpu) X(ActionBlockEgressPorts) \
    X(ActionCopyToCpuCancel) X(ActionSetPcp) X(ActionSetPcpAndQueue) X(ActionSetInnerPcp) \
    X(ActionSetDSCP) X(ActionMapToCosQueue) X(ActionMapToCpuCosQueue) X(ActionRedirect) \
    X(ActionReplaceDstMac) X(ActionRedirectCancel) X(ActionReplaceSrcMac) X(ActionL3Switch) \
    X(ActionBlackHole)
// clang-format on

/** Whether entries know the class T, exactly that class. */
template <class T>
inline constexpr bool isActionClass = false;

#define FILTERS_COMMON_KNOWN(Class)                                                                \
    template <>                                                                                    \
    inline constexpr bool isActionClass<Class> = true;
FILTERS_COMMON_ACTION_CLASSES(FILTERS_COMMON_KNOWN)
#undef FILTERS_COMMON_KNOWN

} // namespace FiltersCommon

// ------------------------------------------------------------------------------------- text dumps
//
// At global scope, one operator for each class. An Action prints by the code of the object, and
// nothing for codes of 17 and above. ActionPorts prints the lines of its ports alone.

#define FILTERS_COMMON_PRINTED(Class)                                                              \
    std::ostream& operator<<(std::ostream& out, const FiltersCommon::Class& action);
FILTERS_COMMON_PRINTED(Action)
FILTERS_COMMON_PRINTED(ActionPorts)
FILTERS_COMMON_ACTION_CLASSES(FILTERS_COMMON_PRINTED)
#undef FILTERS_COMMON_PRINTED

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_ACTIONS_H
