#include "filter_refusals.h"

#include "filter_names_internal.h"
#include "wire/filter_groups_rows.h"

#include <string>
#include <type_traits>

namespace FiltersCommon {

namespace {

/** The name of a code, or its number: signed, as in text dumps, if the enumeration is. */
template <class Code>
std::string nameOrNumber(Code code)
{
    if (const char* name = findName(code))
        return name;
    return std::to_string(static_cast<std::underlying_type_t<Code>>(code));
}

template <class Code>
std::string nameOrNumber(std::optional<Code> code)
{
    return code ? nameOrNumber(*code) : "unknown";
}

/** Yields "A", "A and B" or "A, B and C". */
template <class Code>
std::string enumerate(CodeSet<Code> codes)
{
    std::string text;
    std::size_t left = codes.size();
    for (const Code code : codes) {
        text += nameOrNumber(code);
        --left;
        text += left > 1 ? ", " : left == 1 ? " and " : "";
    }
    return text;
}

/** Yields "; admitted are A and B" or "; none is admitted". */
template <class Code>
std::string listing(const char* what, CodeSet<Code> codes)
{
    if (codes.empty())
        return std::string("; none is ") + what;
    return std::string("; ") + what + (codes.size() > 1 ? " are " : " is ") + enumerate(codes);
}

std::string inType(const FiltersRefusal& refusal)
{
    return " is not admitted in a group of type " + nameOrNumber(refusal.type) +
           listing("admitted", refusal.admittedMatches);
}

template <class Code>
std::string atStage(const FiltersRefusal& refusal, CodeSet<Code> admitted)
{
    return " is not admitted at group stage " + nameOrNumber(refusal.stage) +
           listing("admitted", admitted);
}

template <class Code>
std::string unknown(const char* what, std::optional<Code> code, CodeSet<Code> known)
{
    return what + nameOrNumber(code) + " is unknown" + listing("known", known);
}

/** The object of a kind, as far as the kind is known. */
template <class Code>
std::string object(const char* what, std::optional<Code> kind)
{
    return what + (kind ? " of kind " + nameOrNumber(kind) : "");
}

// ------------------------------------------------------------------------------------ what is lost

const FieldSchema* findField(const FiltersRefusal& refusal)
{
    for (const MessageSchema& schema :
         {SCHEMA_OF<FiltersGroupPB>, SCHEMA_OF<FiltersEntryPB>, SCHEMA_OF<MatchPB>,
          SCHEMA_OF<ActionPB>, SCHEMA_OF<CounterPB>})
        if (schema.part == refusal.part && refusal.field)
            return schema.find(*refusal.field);
    return nullptr;
}

std::string partOf(const FiltersRefusal& refusal)
{
    if (refusal.match)
        return "match kind " + nameOrNumber(refusal.match);
    if (refusal.action)
        return "action kind " + nameOrNumber(refusal.action);
    switch (refusal.part.value_or(PART_GROUP)) {
    case PART_ENTRY:
        return "the entry";
    case PART_MATCH:
        return "a match";
    case PART_ACTION:
        return "an action";
    case PART_COUNTER:
        return "the counter";
    case PART_GROUP:
        break;
    }
    return "the group";
}

/** Yields "field vlan_id_ of match kind MATCH_EXTERNAL_VLAN_ID", or its number without a name. */
std::string fieldOf(const FiltersRefusal& refusal)
{
    const FieldSchema* const field = findField(refusal);
    const std::string number = refusal.field ? std::to_string(*refusal.field) : "unknown";
    return "field " + (field != nullptr ? field->name : number) + " of " + partOf(refusal);
}

std::string numberIn(const FiltersRefusal& refusal, std::optional<std::uint64_t> number)
{
    if (!number)
        return "unknown";
    const FieldSchema* const field = findField(refusal);
    if (field != nullptr && field->form == FieldSchema::SIGNED_NUMBER)
        return std::to_string(static_cast<std::int64_t>(*number));
    return std::to_string(*number);
}

std::string unreadable(const FiltersRefusal& refusal)
{
    return refusal.offset
               ? "the bytes cannot be read from offset " + std::to_string(*refusal.offset) + " on"
               : "the bytes cannot be read to their end";
}

std::string skipped(const FiltersRefusal& refusal)
{
    return fieldOf(refusal) +
           (findField(refusal) != nullptr ? " does not have the form of its type" : " is unknown") +
           " and is skipped";
}

std::string replaced(const FiltersRefusal& refusal)
{
    const std::string twice = fieldOf(refusal) + " is there more than once; ";
    if (!refusal.was)
        return twice + "only the last value counts";
    return twice + numberIn(refusal, refusal.was) + " is replaced by " +
           numberIn(refusal, refusal.became);
}

std::string resized(const FiltersRefusal& refusal)
{
    const bool isCut = refusal.was && refusal.became && *refusal.was > *refusal.became;
    return fieldOf(refusal) + " has " + numberIn(refusal, refusal.was) + " bytes and is " +
           (isCut ? "cut" : "padded with zeros") + " to " + numberIn(refusal, refusal.became);
}

std::string reasonOf(const FiltersRefusal& refusal)
{
    switch (refusal.reason) {
    case REFUSAL_UNKNOWN_TYPE:
        return unknown("group type ", refusal.type, refusal.admittedTypes);
    case REFUSAL_MATCH_NOT_IN_TYPE:
        return "match kind " + nameOrNumber(refusal.match) + inType(refusal);
    case REFUSAL_UNKNOWN_STAGE:
        return unknown("group stage ", refusal.stage, refusal.admittedStages);
    case REFUSAL_ACTION_NOT_AT_STAGE:
        return "action kind " + nameOrNumber(refusal.action) +
               atStage(refusal, refusal.admittedActions);
    case REFUSAL_POLICER_NOT_AT_STAGE:
        return "a policer of stage " + nameOrNumber(refusal.policerStage) +
               atStage(refusal, refusal.admittedPolicerStages);
    case REFUSAL_TYPE_NOT_AT_STAGE:
        return "group type " + nameOrNumber(refusal.type) +
               atStage(refusal, refusal.admittedTypes) + "; the type is admitted at " +
               (refusal.admittedStages.empty() ? "no stage" : enumerate(refusal.admittedStages));
    case REFUSAL_UNKNOWN_MATCH_CLASS:
        return object("the match", refusal.match) + " is of a class that entries do not know";
    case REFUSAL_UNKNOWN_ACTION_CLASS:
        return object("the action", refusal.action) + " is of a class that entries do not know";
    case REFUSAL_IPV4_WITH_IPV6:
        return "match kind " + nameOrNumber(refusal.match) + " is not admitted beside " +
               enumerate(refusal.excludingMatches) +
               "; an entry holds IPv4 addresses or IPv6 addresses, never both";
    case REFUSAL_MATCH_NOT_OF_ITS_KIND:
        return object("the match", refusal.match) + " is not of that kind's class";
    case REFUSAL_ACTION_NOT_OF_ITS_KIND:
        return object("the action", refusal.action) + " is not of that kind's class";
    case REFUSAL_UNKNOWN_MATCH_KIND:
        return unknown("match kind ", refusal.match, refusal.admittedMatches);
    case REFUSAL_UNKNOWN_ACTION_KIND:
        return unknown("action kind ", refusal.action, refusal.admittedActions);
    case REFUSAL_MATCH_NOT_IN_C:
        return "match kind " + nameOrNumber(refusal.match) + " is not offered in the C interface" +
               listing("offered", refusal.admittedMatches);
    case REFUSAL_NOT_PARSED:
        return unreadable(refusal);
    case REFUSAL_FIELD_MISSING:
        return "the required " + fieldOf(refusal) + " is missing";
    case REFUSAL_FIELD_UNKNOWN:
        return skipped(refusal);
    case REFUSAL_FIELD_REPLACED:
        return replaced(refusal);
    case REFUSAL_FIELD_NOT_OF_KIND:
        return fieldOf(refusal) + " is not a field of that kind and is skipped";
    case REFUSAL_NUMBER_CUT:
        return fieldOf(refusal) + " holds " + numberIn(refusal, refusal.was) +
               ", which does not fit and becomes " + numberIn(refusal, refusal.became);
    case REFUSAL_LENGTH_CHANGED:
        return resized(refusal);
    case REFUSAL_MATCH_REPLACED:
        return object("the match", refusal.match) + " is replaced by a later one of its kind";
    case REFUSAL_ACTION_REPLACED:
        return object("the action", refusal.action) + " is replaced by a later one of its kind";
    case REFUSAL_ENTRY_REPLACED:
        return "the entry is replaced by a later one with its identifier";
    case REFUSAL_POLICER_NOT_PARSED:
        return "the bytes of the policer do not parse; the entry has no policer";
    case REFUSAL_POLICER_CHANGED:
        return "the policer does not hold everything that its bytes say";
    }
    return "the reason is unknown";
}

} // namespace

std::string FiltersRefusal::sentence() const
{
    return (entry ? "entry " + std::to_string(*entry) + ": " : "") + reasonOf(*this);
}

} // namespace FiltersCommon
