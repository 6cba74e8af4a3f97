#include "filter_names.h"

#include "filter_actions.h"
#include "filter_group_rules.h"
#include "filter_matches.h"
#include "filter_names_internal.h"

#include <cstddef>
#include <iterator>

namespace FiltersCommon {

// ----------------------------------------------------------------------------------------- tables

namespace {

template <class Code>
struct NamedCode {
    Code code;
    const char* name;
};

/** Names are generated from the enumerators, so that the two cannot differ. */
#define NAMED(enumerator)                                                                          \
    {                                                                                              \
        enumerator, #enumerator                                                                    \
    }

#define NAMED_KIND(kind, Class, Values) NAMED(kind),

// clang-format off
constexpr NamedCode<filtersErr_t> RESULT_NAMES[] = {
    NAMED(FILTERS_OK),
    NAMED(FILTERS_ERR_NOT_FOUND),
    NAMED(FILTERS_ERR_INVALID),
    NAMED(FILTERS_ERR_BAD_PARAM),
    NAMED(FILTERS_ERR_MATCH_NOT_ALLOWED),
    NAMED(FILTERS_ERR_TYPE_NOT_ALLOWED),
    NAMED(FILTERS_ERR_UNKNOWN_STAGE),
    NAMED(FILTERS_ERR_ACTION_NOT_ALLOWED),
    NAMED(FILTERS_ERR_POLICER_STAGE),
};

constexpr NamedCode<filtersMatch_t> MATCH_NAMES[] = {
    FILTERS_COMMON_EACH_MATCH_KIND(NAMED_KIND)
};

constexpr NamedCode<filtersAction_t> ACTION_NAMES[] = {
    FILTERS_COMMON_EACH_ACTION_KIND(NAMED_KIND)
};

constexpr NamedCode<filtersGroupStage_t> GROUP_STAGE_NAMES[] = {
    NAMED(GROUP_STAGE_0),
    NAMED(GROUP_STAGE_1),
    NAMED(GROUP_STAGE_2),
    NAMED(GROUP_STAGE_3),
};

constexpr NamedCode<filtersGroupType_t> GROUP_TYPE_NAMES[] = {
    NAMED(GROUP_TYPE_0),
    NAMED(GROUP_TYPE_1),
    NAMED(GROUP_TYPE_2),
    NAMED(GROUP_TYPE_3),
    NAMED(GROUP_TYPE_4),
    NAMED(GROUP_TYPE_5),
    NAMED(GROUP_TYPE_6),
    NAMED(GROUP_TYPE_7),
    NAMED(GROUP_TYPE_8),
    NAMED(GROUP_TYPE_9),
};

constexpr NamedCode<filtersRefusalReason_t> REASON_NAMES[] = {
    NAMED(REFUSAL_UNKNOWN_TYPE),
    NAMED(REFUSAL_MATCH_NOT_IN_TYPE),
    NAMED(REFUSAL_UNKNOWN_STAGE),
    NAMED(REFUSAL_ACTION_NOT_AT_STAGE),
    NAMED(REFUSAL_POLICER_NOT_AT_STAGE),
    NAMED(REFUSAL_TYPE_NOT_AT_STAGE),
    NAMED(REFUSAL_UNKNOWN_MATCH_CLASS),
    NAMED(REFUSAL_UNKNOWN_ACTION_CLASS),
    NAMED(REFUSAL_IPV4_WITH_IPV6),
    NAMED(REFUSAL_MATCH_NOT_OF_ITS_KIND),
    NAMED(REFUSAL_ACTION_NOT_OF_ITS_KIND),
    NAMED(REFUSAL_UNKNOWN_MATCH_KIND),
    NAMED(REFUSAL_UNKNOWN_ACTION_KIND),
    NAMED(REFUSAL_MATCH_NOT_IN_C),
    NAMED(REFUSAL_NOT_PARSED),
    NAMED(REFUSAL_FIELD_MISSING),
    NAMED(REFUSAL_FIELD_UNKNOWN),
    NAMED(REFUSAL_FIELD_REPLACED),
    NAMED(REFUSAL_FIELD_NOT_OF_KIND),
    NAMED(REFUSAL_NUMBER_CUT),
    NAMED(REFUSAL_LENGTH_CHANGED),
    NAMED(REFUSAL_MATCH_REPLACED),
    NAMED(REFUSAL_ACTION_REPLACED),
    NAMED(REFUSAL_ENTRY_REPLACED),
    NAMED(REFUSAL_POLICER_NOT_PARSED),
    NAMED(REFUSAL_POLICER_CHANGED),
};

constexpr NamedCode<filtersPart_t> PART_NAMES[] = {
    NAMED(PART_GROUP),
    NAMED(PART_ENTRY),
    NAMED(PART_MATCH),
    NAMED(PART_ACTION),
    NAMED(PART_COUNTER),
};

using policer::STAGE_EGRESS;
using policer::STAGE_INGRESS;
using policer::STAGE_NONE;
constexpr NamedCode<policer::Stage> POLICER_STAGE_NAMES[] = {
    NAMED(STAGE_INGRESS),
    NAMED(STAGE_EGRESS),
    NAMED(STAGE_NONE),
};
// clang-format on

#undef NAMED_KIND
#undef NAMED

/** Whether the codes of the table run from 0 without a gap. */
template <class Code, std::size_t N>
constexpr bool areAtTheirCodes(const NamedCode<Code> (&names)[N])
{
    for (std::size_t i = 0; i < N; ++i)
        if (static_cast<std::size_t>(names[i].code) != i)
            return false;
    return true;
}

static_assert(std::size(GROUP_STAGE_NAMES) == std::size(STAGE_TYPES) &&
              areAtTheirCodes(GROUP_STAGE_NAMES));
static_assert(std::size(GROUP_TYPE_NAMES) == std::size(TYPE_MATCHES) &&
              areAtTheirCodes(GROUP_TYPE_NAMES));
static_assert(areAtTheirCodes(REASON_NAMES));

template <class Code, std::size_t N>
const char* findIn(const NamedCode<Code> (&names)[N], Code code)
{
    for (const NamedCode<Code>& named : names)
        if (named.code == code)
            return named.name;
    return nullptr;
}

const char* orUnknown(const char* name) { return name == nullptr ? "unknown" : name; }

} // namespace

// --------------------------------------------------------------------------------------- internal

const char* findName(filtersErr_t code) { return findIn(RESULT_NAMES, code); }
const char* findName(filtersMatch_t kind) { return findIn(MATCH_NAMES, kind); }
const char* findName(filtersAction_t kind) { return findIn(ACTION_NAMES, kind); }
const char* findName(filtersGroupStage_t stage) { return findIn(GROUP_STAGE_NAMES, stage); }
const char* findName(filtersGroupType_t type) { return findIn(GROUP_TYPE_NAMES, type); }
const char* findName(filtersRefusalReason_t reason) { return findIn(REASON_NAMES, reason); }
const char* findName(filtersPart_t part) { return findIn(PART_NAMES, part); }
const char* findName(policer::Stage stage) { return findIn(POLICER_STAGE_NAMES, stage); }

// ----------------------------------------------------------------------------------------- public

const char* filtersErrName(filtersErr_t code) { return orUnknown(findName(code)); }
const char* filtersMatchName(filtersMatch_t kind) { return orUnknown(findName(kind)); }
const char* filtersActionName(filtersAction_t kind) { return orUnknown(findName(kind)); }
const char* filtersGroupStageName(filtersGroupStage_t stage) { return orUnknown(findName(stage)); }
const char* filtersGroupTypeName(filtersGroupType_t type) { return orUnknown(findName(type)); }

const char* filtersRefusalReasonName(filtersRefusalReason_t reason)
{
    return orUnknown(findName(reason));
}

const char* filtersPartName(filtersPart_t part) { return orUnknown(findName(part)); }

const char* filtersPolicerStageName(uint32_t stage)
{
    return orUnknown(findName(static_cast<policer::Stage>(stage)));
}

} // namespace FiltersCommon
