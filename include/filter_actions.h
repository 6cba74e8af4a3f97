/**
 * Actions: what the switch does with a packet that a rule matches.
 *
 * Every action is an object of a class derived from Action and carries the code of its kind.
 * Objects are plain values: nothing is validated (a PCP of 200 stays 200), and after construction
 * only reading from the wire changes them. Assigning one action to another copies the values, never
 * the kind. Default constructors set numbers and addresses to 0 and leave lists empty.
 *
 * Two actions of the same class are compared by their parameters; an action of a class and one of a
 * class derived from it are compared as the base class, in either order. Any other comparison, and
 * any through Action, uses Action::operator==, where objects of different kinds differ.
 */
#ifndef FILTER_COMMON_FILTER_ACTIONS_H
#define FILTER_COMMON_FILTER_ACTIONS_H

#include "filter_class_support.h"
#include "filter_types.h"

#include <net/ethernet.h>

#include <initializer_list>
#include <iosfwd>
#include <list>
#include <utility>

#pragma GCC visibility push(default)

namespace FiltersCommon {

class ActionPB;
struct FILTERS_COMMON_INTERNAL ActionRows; // describes the members of each class

/** An action. A bare Action can be built with any code and holds nothing else. */
class Action {
public:
    explicit Action(filtersAction_t type) : type_(type) {}
    Action(const Action&) = default;
    /** Does nothing: assignment never changes the kind. */
    Action& operator=(const Action&) noexcept { return *this; }
    virtual ~Action();

    /** Writes the kind's code and parameters; a bare Action writes the code only. */
    virtual void convertToActionPB(ActionPB* pb) const;

    /**
     * Reads the kind's parameters from @p pb, whose type is neither read nor checked. Numbers are
     * truncated to the width of the member; an absent field reads as 0. A MAC address that is too
     * short is padded with zeros, one that is too long is truncated. A bare Action reads nothing.
     */
    virtual void convertFromActionPB(const ActionPB* pb);

    filtersAction_t getType() const { return type_; }

    /**
     * True if both objects have the same kind and the same parameters. Two objects of the
     * same unknown kind are equal, deliberately unlike matches. False for an object that is not of
     * the class that holds its kind's parameters.
     */
    bool operator==(const Action& other) const;

private:
    const filtersAction_t type_;
};

/**
 * Compares actions of two different classes, with the same result in either order: as the base
 * class if one class derives from the other, otherwise by kind, with Action::operator==.
 */
template <class T, class U, EnableIfDifferent<Action, T, U> = 0>
bool operator==(const T& a, const U& b)
{
    using Class = ComparedAs<Action, T, U>;
    return static_cast<const Class&>(a) == static_cast<const Class&>(b);
}

/** What every action class declares. */
#define FILTERS_COMMON_DECLARE_ACTION(Class)                                                       \
    FILTERS_COMMON_DECLARE_COPYABLE(Class)                                                         \
    using Action::operator==;

/** What an action class declares if its members go into messages. */
#define FILTERS_COMMON_DECLARE_ACTION_VALUES                                                       \
    friend struct ActionRows;                                                                      \
    void convertToActionPB(ActionPB* pb) const override;                                           \
    void convertFromActionPB(const ActionPB* pb) override;

#define FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(Class)                                           \
    FILTERS_COMMON_DECLARE_ACTION(Class)                                                           \
    FILTERS_COMMON_DECLARE_ACTION_VALUES

/** A list of ports in the caller's order, duplicates kept. Only its code goes into messages. */
class ActionPorts : public Action {
public:
    ActionPorts(filtersAction_t type, std::list<limid_t> ports)
        : Action(type), ports_(std::move(ports))
    {}

    ActionPorts(const ActionPorts&) = default;
    ActionPorts(ActionPorts&&) noexcept = default;
    ActionPorts& operator=(const ActionPorts& other);
    ActionPorts& operator=(ActionPorts&& other) noexcept = default;
    ~ActionPorts() override;

    std::list<limid_t> getPorts() const { return ports_; }
    /** The list itself, valid until the action is changed or destroyed. */
    const std::list<limid_t>& getPortsRef() const { return ports_; }

    using Action::operator==;
    /** Compares the ports in order; the kinds of the two objects do not matter. */
    bool operator==(const ActionPorts& other) const;

private:
    friend struct ActionRows;
    std::list<limid_t> ports_;
};

// ------------------------------------------------------------------------ the kinds in code order

/** Let the packet pass. */
class ActionPermit : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_PERMIT;

    ActionPermit() : Action(KIND) {}

    FILTERS_COMMON_DECLARE_ACTION(ActionPermit)
    virtual bool operator==(const ActionPermit&) const { return true; }
};

/** Drop the packet. */
class ActionDeny : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_DENY;

    ActionDeny() : Action(KIND) {}

    FILTERS_COMMON_DECLARE_ACTION(ActionDeny)
    bool operator==(const ActionDeny&) const { return true; }
};

/** Send a copy of the packet to the CPU. */
class ActionCopyToCpu : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_COPY_TO_CPU;

    ActionCopyToCpu() : Action(KIND) {}

    FILTERS_COMMON_DECLARE_ACTION(ActionCopyToCpu)
    bool operator==(const ActionCopyToCpu&) const { return true; }
};

/** Keep the packet from leaving through the listed ports. */
class ActionBlockEgressPorts : public ActionPorts {
public:
    static constexpr filtersAction_t KIND = ACTION_BLOCK_EGRESS_PORTS;

    ActionBlockEgressPorts() : ActionBlockEgressPorts(std::list<limid_t>()) {}
    explicit ActionBlockEgressPorts(std::list<limid_t> ports) : ActionPorts(KIND, std::move(ports))
    {}
    explicit ActionBlockEgressPorts(std::initializer_list<NoValues>) : ActionBlockEgressPorts() {}

    /** Reading appends to the ports the action already holds, unlike ActionRedirect. */
    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionBlockEgressPorts)
    bool operator==(const ActionBlockEgressPorts& other) const
    {
        return ActionPorts::operator==(other);
    }
};

/** Cancel the copying or switching to the CPU. */
class ActionCopyToCpuCancel : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_COPY_TO_CPU_CANCEL;

    ActionCopyToCpuCancel() : ActionCopyToCpuCancel(cp2cpuCancelParam_t{}) {}
    explicit ActionCopyToCpuCancel(cp2cpuCancelParam_t cancelType)
        : Action(KIND), cancelType_(cancelType)
    {}

    cp2cpuCancelParam_t getCancelType() const { return cancelType_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionCopyToCpuCancel)
    bool operator==(const ActionCopyToCpuCancel& other) const
    {
        return cancelType_ == other.cancelType_;
    }

private:
    cp2cpuCancelParam_t cancelType_;
};

/** Set the priority code point. */
class ActionSetPcp : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_PCP;

    ActionSetPcp() : ActionSetPcp(0) {}
    explicit ActionSetPcp(unsigned char pcp) : Action(KIND), pcp_(pcp) {}

    unsigned char getPcp() const { return pcp_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionSetPcp)
    bool operator==(const ActionSetPcp& other) const { return pcp_ == other.pcp_; }

private:
    unsigned char pcp_;
};

/** Set the priority code point and the queue, as one number that is never split. */
class ActionSetPcpAndQueue : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_PCP_AND_QUEUE;

    ActionSetPcpAndQueue() : ActionSetPcpAndQueue(0) {}
    explicit ActionSetPcpAndQueue(unsigned char pcpAndQueue)
        : Action(KIND), pcpAndQueue_(pcpAndQueue)
    {}

    unsigned char getPcpAndQueue() const { return pcpAndQueue_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionSetPcpAndQueue)
    bool operator==(const ActionSetPcpAndQueue& other) const
    {
        return pcpAndQueue_ == other.pcpAndQueue_;
    }

private:
    unsigned char pcpAndQueue_;
};

/** Set the priority code point of the inner tag. */
class ActionSetInnerPcp : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_INNER_PCP;

    ActionSetInnerPcp() : ActionSetInnerPcp(0) {}
    explicit ActionSetInnerPcp(unsigned char innerPcp) : Action(KIND), innerPcp_(innerPcp) {}

    unsigned char getInnerPcp() const { return innerPcp_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionSetInnerPcp)
    bool operator==(const ActionSetInnerPcp& other) const { return innerPcp_ == other.innerPcp_; }

private:
    unsigned char innerPcp_;
};

/** Set the DSCP. */
class ActionSetDSCP : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_SET_DSCP;

    ActionSetDSCP() : ActionSetDSCP(0) {}
    explicit ActionSetDSCP(unsigned char dscp) : Action(KIND), dscp_(dscp) {}

    unsigned char getDSCP() const { return dscp_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionSetDSCP)
    bool operator==(const ActionSetDSCP& other) const { return dscp_ == other.dscp_; }

private:
    unsigned char dscp_;
};

/** Put the packet into a class-of-service queue. */
class ActionMapToCosQueue : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_MAP_TO_COS_QUEUE;

    ActionMapToCosQueue() : ActionMapToCosQueue(0) {}
    explicit ActionMapToCosQueue(unsigned char cosQueue) : Action(KIND), cosQueue_(cosQueue) {}

    unsigned char getCosQueue() const { return cosQueue_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionMapToCosQueue)
    virtual bool operator==(const ActionMapToCosQueue& other) const
    {
        return cosQueue_ == other.cosQueue_;
    }

private:
    unsigned char cosQueue_;
};

/** Put the packet into a class-of-service queue of the CPU. */
class ActionMapToCpuCosQueue : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_MAP_TO_CPU_COS_QUEUE;

    ActionMapToCpuCosQueue() : ActionMapToCpuCosQueue(0) {}
    explicit ActionMapToCpuCosQueue(unsigned char cpuCosQueue)
        : Action(KIND), cpuCosQueue_(cpuCosQueue)
    {}

    unsigned char getCpuCosQueue() const { return cpuCosQueue_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionMapToCpuCosQueue)
    bool operator==(const ActionMapToCpuCosQueue& other) const
    {
        return cpuCosQueue_ == other.cpuCosQueue_;
    }

private:
    unsigned char cpuCosQueue_;
};

/** Send the packet out of another port, or out of several if the action was read from the wire. */
class ActionRedirect : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REDIRECT;

    /** No port. */
    ActionRedirect() : Action(KIND) {}
    explicit ActionRedirect(const limid_t& port) : Action(KIND), ports_{port} {}
    explicit ActionRedirect(std::initializer_list<NoValues>) : ActionRedirect(limid_t{}) {}

    ActionRedirect(const ActionRedirect&) = default;
    ActionRedirect(ActionRedirect&&) noexcept = default;
    ActionRedirect& operator=(const ActionRedirect& other);
    ActionRedirect& operator=(ActionRedirect&& other) noexcept = default;
    ~ActionRedirect() override;

    std::list<limid_t> getRedirectPorts() const { return ports_; }
    /** The list itself, valid until the action is changed or destroyed. */
    const std::list<limid_t>& getRedirectPortsRef() const { return ports_; }

    /** Reading replaces the ports. */
    FILTERS_COMMON_DECLARE_ACTION_VALUES
    using Action::operator==;
    virtual bool operator==(const ActionRedirect& other) const;

private:
    std::list<limid_t> ports_;
};

/** Replace the destination MAC address. */
class ActionReplaceDstMac : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REPLACE_DST_MAC;

    ActionReplaceDstMac() : ActionReplaceDstMac(ether_addr{}) {}
    explicit ActionReplaceDstMac(const ether_addr& mac) : Action(KIND), mac_(mac) {}
    explicit ActionReplaceDstMac(std::initializer_list<NoValues>) : ActionReplaceDstMac() {}

    ether_addr getReplaceDstMac() const { return mac_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionReplaceDstMac)
    virtual bool operator==(const ActionReplaceDstMac& other) const;

private:
    ether_addr mac_;
};

/** Cancel a redirection. */
class ActionRedirectCancel : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REDIRECT_CANCEL;

    ActionRedirectCancel() : Action(KIND) {}

    FILTERS_COMMON_DECLARE_ACTION(ActionRedirectCancel)
    virtual bool operator==(const ActionRedirectCancel&) const { return true; }
};

/** Replace the source MAC address. */
class ActionReplaceSrcMac : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_REPLACE_SRC_MAC;

    ActionReplaceSrcMac() : ActionReplaceSrcMac(ether_addr{}) {}
    explicit ActionReplaceSrcMac(const ether_addr& mac) : Action(KIND), mac_(mac) {}
    explicit ActionReplaceSrcMac(std::initializer_list<NoValues>) : ActionReplaceSrcMac() {}

    ether_addr getReplaceSrcMac() const { return mac_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionReplaceSrcMac)
    virtual bool operator==(const ActionReplaceSrcMac& other) const;

private:
    ether_addr mac_;
};

/** Hand the packet to layer-3 switching. */
class ActionL3Switch : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_L3_SWITCH;

    ActionL3Switch() : ActionL3Switch(0) {}
    explicit ActionL3Switch(unsigned int l3DestinationId)
        : Action(KIND), l3DestinationId_(l3DestinationId)
    {}

    unsigned int getL3DestinationId() const { return l3DestinationId_; }

    FILTERS_COMMON_DECLARE_ACTION_WITH_VALUES(ActionL3Switch)
    bool operator==(const ActionL3Switch& other) const
    {
        return l3DestinationId_ == other.l3DestinationId_;
    }

private:
    unsigned int l3DestinationId_;
};

/** Discard the packet silently. */
class ActionBlackHole : public Action {
public:
    static constexpr filtersAction_t KIND = ACTION_BLACK_HOLE;

    ActionBlackHole() : Action(KIND) {}

    FILTERS_COMMON_DECLARE_ACTION(ActionBlackHole)
    bool operator==(const ActionBlackHole&) const { return true; }
};

/**
 * One row per kind of action, in code order from 0: whether its class has parameters of its own,
 * those of a family, or none; the kind; the class; and the class that holds the parameters. Code
 * for every kind or class is generated by expanding these rows.
 */
// clang-format off
#define FILTERS_COMMON_ACTION_KINDS(WITH_VALUES, OF_FAMILY, WITHOUT_VALUES)                     \
    WITHOUT_VALUES(ACTION_PERMIT,               ActionPermit,           NoValues)               \
    WITHOUT_VALUES(ACTION_DENY,                 ActionDeny,             NoValues)               \
    WITHOUT_VALUES(ACTION_COPY_TO_CPU,          ActionCopyToCpu,        NoValues)               \
    OF_FAMILY     (ACTION_BLOCK_EGRESS_PORTS,   ActionBlockEgressPorts, ActionPorts)            \
    WITH_VALUES   (ACTION_COPY_TO_CPU_CANCEL,   ActionCopyToCpuCancel,  ActionCopyToCpuCancel)  \
    WITH_VALUES   (ACTION_SET_PCP,              ActionSetPcp,           ActionSetPcp)           \
    WITH_VALUES   (ACTION_SET_PCP_AND_QUEUE,    ActionSetPcpAndQueue,   ActionSetPcpAndQueue)   \
    WITH_VALUES   (ACTION_SET_INNER_PCP,        ActionSetInnerPcp,      ActionSetInnerPcp)      \
    WITH_VALUES   (ACTION_SET_DSCP,             ActionSetDSCP,          ActionSetDSCP)          \
    WITH_VALUES   (ACTION_MAP_TO_COS_QUEUE,     ActionMapToCosQueue,    ActionMapToCosQueue)    \
    WITH_VALUES   (ACTION_MAP_TO_CPU_COS_QUEUE, ActionMapToCpuCosQueue, ActionMapToCpuCosQueue) \
    WITH_VALUES   (ACTION_REDIRECT,             ActionRedirect,         ActionRedirect)         \
    WITH_VALUES   (ACTION_REPLACE_DST_MAC,      ActionReplaceDstMac,    ActionReplaceDstMac)    \
    WITHOUT_VALUES(ACTION_REDIRECT_CANCEL,      ActionRedirectCancel,   NoValues)               \
    WITH_VALUES   (ACTION_REPLACE_SRC_MAC,      ActionReplaceSrcMac,    ActionReplaceSrcMac)    \
    WITH_VALUES   (ACTION_L3_SWITCH,            ActionL3Switch,         ActionL3Switch)         \
    WITHOUT_VALUES(ACTION_BLACK_HOLE,           ActionBlackHole,        NoValues)
// clang-format on

/** Expands X(kind, class, class that holds the values) for each row. */
#define FILTERS_COMMON_EACH_ACTION_KIND(X) FILTERS_COMMON_ACTION_KINDS(X, X, X)

/** Whether T is exactly one of the classes that entries know, ignoring const and volatile. */
template <class T>
inline constexpr bool isActionClass = false;
template <class T>
inline constexpr bool isActionClass<const T> = isActionClass<T>;
template <class T>
inline constexpr bool isActionClass<volatile T> = isActionClass<T>;
template <class T>
inline constexpr bool isActionClass<const volatile T> = isActionClass<T>;

#define FILTERS_COMMON_DECLARE_KNOWN(kind, Class, Values)                                          \
    template <>                                                                                    \
    inline constexpr bool isActionClass<Class> = true;
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DECLARE_KNOWN)
#undef FILTERS_COMMON_DECLARE_KNOWN

} // namespace FiltersCommon

// ------------------------------------------------------------------------------------- text dumps
//
// One operator per class, at global scope. An Action is printed according to its code, or not at
// all if its kind is unknown. An ActionPorts prints only the lines of its ports.

#define FILTERS_COMMON_DECLARE_PRINTED(Class)                                                      \
    std::ostream& operator<<(std::ostream& out, const FiltersCommon::Class& action);
#define FILTERS_COMMON_DECLARE_KIND_PRINTED(kind, Class, Values)                                   \
    FILTERS_COMMON_DECLARE_PRINTED(Class)
FILTERS_COMMON_DECLARE_PRINTED(Action)
FILTERS_COMMON_DECLARE_PRINTED(ActionPorts)
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DECLARE_KIND_PRINTED)
#undef FILTERS_COMMON_DECLARE_KIND_PRINTED
#undef FILTERS_COMMON_DECLARE_PRINTED

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_ACTIONS_H
