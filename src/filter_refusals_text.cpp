#include "filter_refusals.h"

#include "filter_names_internal.h"

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
    }
    return "the reason is unknown";
}

} // namespace

std::string FiltersRefusal::sentence() const
{
    return (entry ? "entry " + std::to_string(*entry) + ": " : "") + reasonOf(*this);
}

} // namespace FiltersCommon
