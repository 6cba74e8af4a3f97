/**
 * The vocabulary of packet filters: identifiers, priorities, kind codes, result codes, reasons for
 * refusals, group stages and types, and small types used by single match and action classes.
 *
 * Plain C11 and C++17. In C++ everything is in the namespace FiltersCommon.
 *
 * Every number below is stored on the wire, printed in text dumps and passed through the C
 * interface: none may ever be renumbered. An enumeration variable may hold any 32-bit value, as
 * codes from the wire are not checked. Such a code may be negative in C++ and positive in C:
 * compare codes as unsigned numbers.
 */
#ifndef FILTER_COMMON_FILTER_TYPES_H
#define FILTER_COMMON_FILTER_TYPES_H

#include <limidmgr_decode.h>

#include <stdint.h>

/*
 * Declarations between the two visibility pragmas of a public header belong to the shared library's
 * binary interface; everything else is internal. The first macro marks declarations between the
 * pragmas that are internal all the same. The second is for function templates that the library
 * instantiates: GCC does not apply the pragmas to them.
 */
#define FILTERS_COMMON_INTERNAL __attribute__((visibility("hidden")))
#define FILTERS_COMMON_PUBLIC __attribute__((visibility("default")))

#pragma GCC visibility push(default)

#ifdef __cplusplus
/** A fixed underlying type lets an enumeration hold any value read from the wire. */
#define FILTERS_COMMON_INT32 : int32_t
namespace FiltersCommon {
#else
#define FILTERS_COMMON_INT32
#endif

/* ------------------------------------------------------------------ identifiers and priorities */

typedef uint16_t filtersEntryId_t;

/** Deliberately 32 bits wide, unlike the priority of a group. */
typedef uint32_t filtersEntryPriority_t;

typedef uint16_t filtersGroupId_t;
typedef uint16_t filtersGroupPriority_t;

/* ------------------------------------------------------------------------------ kinds of match */

/** The kind of a match criterion; each match class carries exactly one of these codes. */
typedef enum filtersMatch_t FILTERS_COMMON_INT32 {
    MATCH_ALL = 0,
    MATCH_INGRESS_PORTS = 1,
    MATCH_EXTERNAL_VLAN_ID = 2,
    MATCH_TPID = 3,
    MATCH_DST_MAC = 4,
    MATCH_DST_L4_PORT = 5,
    MATCH_SRC_L4_PORT = 6,
    MATCH_SRC_MAC = 7,
    MATCH_L2_SRC_ENTRY_TYPE = 8,
    MATCH_SRC_IPV4 = 9,
    MATCH_DST_IPV4 = 10,
    MATCH_INTERNAL_VLAN_ID = 11,
    MATCH_PCP = 12,
    MATCH_INTERNAL_PCP = 13,
    MATCH_SRC_IPV6 = 14,
    MATCH_DST_IPV6 = 15,
    MATCH_VLAN_UNTAGGED = 16,
    MATCH_IP_PROTOCOL = 17,
    MATCH_PACKET_RES = 18,
    MATCH_MPLS_TERM = 19,
    MATCH_TOS = 20, /**< also the code of a MatchDSCP */
    MATCH_VIRTUAL_PORT = 21,
    MATCH_EGRESS_PORTS = 22,
    MATCH_INGRESS_STP_STATE = 23,
    MATCH_VLAN_INFO = 24,
    MATCH_SRC_PORT = 25,
    MATCH_TTL = 26,
    MATCH_VRF_ID = 27,
    MATCH_DROP = 28,
    MATCH_CPU_PORT = 29,
    MATCH_FORWARDING_TYPE = 30,
    MATCH_DESTINATION_CPU = 31
} filtersMatch_t;

/* ----------------------------------------------------------------------------- kinds of action */

/** The kind of an action; each action class carries exactly one of these codes. */
typedef enum filtersAction_t FILTERS_COMMON_INT32 {
    ACTION_PERMIT = 0,
    ACTION_DENY = 1,
    ACTION_COPY_TO_CPU = 2,
    ACTION_BLOCK_EGRESS_PORTS = 3,
    ACTION_COPY_TO_CPU_CANCEL = 4,
    ACTION_SET_PCP = 5,
    ACTION_SET_PCP_AND_QUEUE = 6,
    ACTION_SET_INNER_PCP = 7,
    ACTION_SET_DSCP = 8,
    ACTION_MAP_TO_COS_QUEUE = 9,
    ACTION_MAP_TO_CPU_COS_QUEUE = 10,
    ACTION_REDIRECT = 11,
    ACTION_REPLACE_DST_MAC = 12,
    ACTION_REDIRECT_CANCEL = 13,
    ACTION_REPLACE_SRC_MAC = 14,
    ACTION_L3_SWITCH = 15,
    ACTION_BLACK_HOLE = 16
} filtersAction_t;

/* -------------------------------------------------------------------------------- result codes */

/**
 * The result of every operation that can refuse: zero for success, a negative code for a refusal.
 * -1 and -2 are never produced.
 */
typedef enum filtersErr_t FILTERS_COMMON_INT32 {
    FILTERS_OK = 0,
    /** The entry, match kind or action kind asked for is not present. */
    FILTERS_ERR_NOT_FOUND = -3,
    /** The class, value or group type is unknown to the library, or may not be combined. */
    FILTERS_ERR_INVALID = -4,
    /** A required argument is missing, or the object's state forbids the change. */
    FILTERS_ERR_BAD_PARAM = -5,
    /** The entry holds a match kind that the group's type does not admit. */
    FILTERS_ERR_MATCH_NOT_ALLOWED = -6,
    /** The group's type is not admitted at the group's stage. */
    FILTERS_ERR_TYPE_NOT_ALLOWED = -7,
    /** There is no such group stage. */
    FILTERS_ERR_UNKNOWN_STAGE = -8,
    /** The entry holds an action kind that the group's stage does not admit. */
    FILTERS_ERR_ACTION_NOT_ALLOWED = -9,
    /** The entry's policer belongs to a policer stage that does not fit the group's stage. */
    FILTERS_ERR_POLICER_STAGE = -10
} filtersErr_t;

/* ------------------------------------------------------------------------ reasons for refusals */

/**
 * Why something is refused, in more detail than a result code; the code of each reason is given
 * after it. Reasons do not appear on the wire or in text dumps.
 */
typedef enum filtersRefusalReason_t FILTERS_COMMON_INT32 {
    /** There is no such group type. FILTERS_ERR_INVALID */
    REFUSAL_UNKNOWN_TYPE = 0,
    /** The group's type does not admit the match kind. FILTERS_ERR_MATCH_NOT_ALLOWED */
    REFUSAL_MATCH_NOT_IN_TYPE = 1,
    /** There is no such group stage. FILTERS_ERR_UNKNOWN_STAGE */
    REFUSAL_UNKNOWN_STAGE = 2,
    /** The group's stage does not admit the action kind. FILTERS_ERR_ACTION_NOT_ALLOWED */
    REFUSAL_ACTION_NOT_AT_STAGE = 3,
    /** The group's stage does not admit policers of that stage. FILTERS_ERR_POLICER_STAGE */
    REFUSAL_POLICER_NOT_AT_STAGE = 4,
    /** The group's stage does not admit the group's type. FILTERS_ERR_TYPE_NOT_ALLOWED */
    REFUSAL_TYPE_NOT_AT_STAGE = 5,
    /** The class is not a match class that entries know. FILTERS_ERR_INVALID */
    REFUSAL_UNKNOWN_MATCH_CLASS = 6,
    /** The class is not an action class that entries know. FILTERS_ERR_INVALID */
    REFUSAL_UNKNOWN_ACTION_CLASS = 7,
    /** IPv4 and IPv6 addresses would be combined. FILTERS_ERR_INVALID */
    REFUSAL_IPV4_WITH_IPV6 = 8,
    /** The object is not of the class that holds the values of its kind. FILTERS_ERR_INVALID */
    REFUSAL_MATCH_NOT_OF_ITS_KIND = 9,
    /** The object is not of the class that holds the values of its kind. FILTERS_ERR_INVALID */
    REFUSAL_ACTION_NOT_OF_ITS_KIND = 10,
    /** There is no such match kind. FILTERS_ERR_INVALID */
    REFUSAL_UNKNOWN_MATCH_KIND = 11,
    /** There is no such action kind. FILTERS_ERR_INVALID */
    REFUSAL_UNKNOWN_ACTION_KIND = 12,
    /** The C interface does not offer the match kind. FILTERS_ERR_INVALID */
    REFUSAL_MATCH_NOT_IN_C = 13,

    /* What is lost when bytes are read. No operation refuses for these reasons. */

    /** The bytes could not be read to their end. */
    REFUSAL_NOT_PARSED = 14,
    /** A required field is missing; it reads as 0 or empty. */
    REFUSAL_FIELD_MISSING = 15,
    /** The schema has no such field, or not with a value of this form; it is skipped. */
    REFUSAL_FIELD_UNKNOWN = 16,
    /** A field that holds one value is there again with another; the last one counts. */
    REFUSAL_FIELD_REPLACED = 17,
    /** The kind of the match or action does not use the field; it is skipped. */
    REFUSAL_FIELD_NOT_OF_KIND = 18,
    /** A number is too large for its field or its member, and was cut. */
    REFUSAL_NUMBER_CUT = 19,
    /** An address is not as long as its member, and was cut, or padded with zeros. */
    REFUSAL_LENGTH_CHANGED = 20,
    /** A later match of the same kind replaced it. */
    REFUSAL_MATCH_REPLACED = 21,
    /** A later action of the same kind replaced it. */
    REFUSAL_ACTION_REPLACED = 22,
    /** A later entry with the same identifier replaced it. */
    REFUSAL_ENTRY_REPLACED = 23,
    /** The bytes of the policer do not parse; they read as no policer. */
    REFUSAL_POLICER_NOT_PARSED = 24,
    /** The policer that was read from the bytes writes other bytes. */
    REFUSAL_POLICER_CHANGED = 25
} filtersRefusalReason_t;

/** The part of a group that has a field. */
typedef enum filtersPart_t FILTERS_COMMON_INT32 {
    PART_GROUP = 0,
    PART_ENTRY = 1,
    PART_MATCH = 2,
    PART_ACTION = 3,
    PART_COUNTER = 4
} filtersPart_t;

/* ---------------------------------------------------------------------- group stages and types */

/** Where in the packet path a group applies. */
typedef enum filtersGroupStage_t FILTERS_COMMON_INT32 {
    GROUP_STAGE_0 = 0,
    GROUP_STAGE_1 = 1,
    GROUP_STAGE_2 = 2, /**< the stage that takes ingress policers */
    GROUP_STAGE_3 = 3  /**< the stage that takes egress policers */
} filtersGroupStage_t;

/** Which match kinds the entries of a group may use. */
typedef enum filtersGroupType_t FILTERS_COMMON_INT32 {
    GROUP_TYPE_0 = 0, /**< admits no matches */
    GROUP_TYPE_1 = 1,
    GROUP_TYPE_2 = 2,
    GROUP_TYPE_3 = 3,
    GROUP_TYPE_4 = 4,
    GROUP_TYPE_5 = 5,
    GROUP_TYPE_6 = 6,
    GROUP_TYPE_7 = 7,
    GROUP_TYPE_8 = 8,
    GROUP_TYPE_9 = 9
} filtersGroupType_t;

/* ------------------------------------------------------------------------------------ counters */

/** What a counter counts. */
typedef enum counter_type_t FILTERS_COMMON_INT32 {
    COUNTER_TYPE_INVALID = 0, /**< nothing is counted */
    COUNTER_TYPE_PACKETS = 1,
    COUNTER_TYPE_OCTETS = 2
} counter_type_t;

/* ----------------------------------------- small types used by single match and action classes */

/** VLAN tag protocol identifier, host byte order. */
typedef uint16_t tpid_t;

/** Transport-layer port or port mask, host byte order. */
typedef uint16_t l4port_t;

/** Type of a port. Only the CPU port has a name in text dumps. */
typedef enum port_type_t FILTERS_COMMON_INT32 { PORT_TYPE_CPU = 0 } port_type_t;

/*
 * The values of the next four types are defined by the switching hardware. They are stored,
 * compared, transmitted and printed as 32-bit numbers and never interpreted here; the only
 * enumerator of each names its zero.
 */

/** Kind of layer-2 source entry. */
typedef enum l2SrcEntryType_t FILTERS_COMMON_INT32 { L2_SRC_ENTRY_TYPE_0 = 0 } l2SrcEntryType_t;

/** Packet resolution. */
typedef enum en_Resolution FILTERS_COMMON_INT32 { RESOLUTION_0 = 0 } en_Resolution;

/** Spanning-tree state of the ingress port. */
typedef enum en_StpState FILTERS_COMMON_INT32 { STP_STATE_0 = 0 } en_StpState;

/** Forwarding type. */
typedef enum en_ForwardingType FILTERS_COMMON_INT32 { FORWARDING_TYPE_0 = 0 } en_ForwardingType;

/** VLAN information of a packet. */
typedef struct vlan_info_t {
    uint32_t svcVlanType; /**< service-VLAN type */
} vlan_info_t;

/** What an ActionCopyToCpuCancel cancels. */
typedef enum cp2cpuCancelParam_t FILTERS_COMMON_INT32 {
    COPY_TO_CPU_CANCEL = 0,
    SWITCH_TO_CPU_CANCEL = 1
} cp2cpuCancelParam_t;

#ifdef __cplusplus
#define FILTERS_COMMON_IS_32_BITS(type) static_assert(sizeof(type) == 4, #type " is 32 bits wide")
#else
#define FILTERS_COMMON_IS_32_BITS(type) _Static_assert(sizeof(type) == 4, #type " is 32 bits wide")
#endif

FILTERS_COMMON_IS_32_BITS(filtersMatch_t);
FILTERS_COMMON_IS_32_BITS(filtersAction_t);
FILTERS_COMMON_IS_32_BITS(filtersErr_t);
FILTERS_COMMON_IS_32_BITS(filtersRefusalReason_t);
FILTERS_COMMON_IS_32_BITS(filtersPart_t);
FILTERS_COMMON_IS_32_BITS(filtersGroupStage_t);
FILTERS_COMMON_IS_32_BITS(filtersGroupType_t);
FILTERS_COMMON_IS_32_BITS(counter_type_t);
FILTERS_COMMON_IS_32_BITS(port_type_t);
FILTERS_COMMON_IS_32_BITS(l2SrcEntryType_t);
FILTERS_COMMON_IS_32_BITS(en_Resolution);
FILTERS_COMMON_IS_32_BITS(en_StpState);
FILTERS_COMMON_IS_32_BITS(en_ForwardingType);
FILTERS_COMMON_IS_32_BITS(vlan_info_t);
FILTERS_COMMON_IS_32_BITS(cp2cpuCancelParam_t);
FILTERS_COMMON_IS_32_BITS(limid_t);

#undef FILTERS_COMMON_IS_32_BITS
#undef FILTERS_COMMON_INT32

#ifdef __cplusplus
} // namespace FiltersCommon
#endif

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_TYPES_H
