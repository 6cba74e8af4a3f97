#include "filter_refusals_c.h"

#include "contract.h"
#include "filter_refusals.h"
#include "filter_refusals_internal.h"
#include "handle_classes.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/** Reports give the C++ signature of the function. */
#define REQUIRE(condition, function)                                                               \
    FILTERS_COMMON_REQUIRE(condition, "filter_refusals_c.cpp", __LINE__, function)

namespace FiltersCommon {

class FiltersRefusals {
public:
    struct Reason {
        FiltersRefusal refusal;
        std::string sentence = {}; /**< built on first use */
    };

    explicit FiltersRefusals(const std::vector<FiltersRefusal>& refusals)
    {
        reasons.reserve(refusals.size());
        for (const FiltersRefusal& refusal : refusals)
            reasons.push_back({refusal});
    }

    std::vector<Reason> reasons;
};

// ------------------------------------------------------------------------------------------ lists

FiltersRefusals* filtersGroupInsertEntryRefusals(FiltersGroup* g, FiltersEntry* e)
{
    REQUIRE(g != nullptr && e != nullptr,
            "FiltersCommon::FiltersRefusals* FiltersCommon::filtersGroupInsertEntryRefusals("
            "FiltersCommon::FiltersGroup*, FiltersCommon::FiltersEntry*)");
    return new FiltersRefusals(insertEntryRefusals(*g, *e));
}

FiltersRefusals* filtersGroupSetStageRefusals(FiltersGroup* g, filtersGroupStage_t stage)
{
    REQUIRE(g != nullptr,
            "FiltersCommon::FiltersRefusals* FiltersCommon::filtersGroupSetStageRefusals("
            "FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupStage_t)");
    return new FiltersRefusals(setStageRefusals(*g, stage));
}

FiltersRefusals* filtersGroupSetTypeRefusals(FiltersGroup* g, filtersGroupType_t type)
{
    REQUIRE(g != nullptr,
            "FiltersCommon::FiltersRefusals* FiltersCommon::filtersGroupSetTypeRefusals("
            "FiltersCommon::FiltersGroup*, FiltersCommon::filtersGroupType_t)");
    return new FiltersRefusals(setTypeRefusals(*g, type));
}

namespace {

/** Why a handle's object cannot be used. */
template <class Kinds, class Base>
std::vector<FiltersRefusal> handleRefusals(const FiltersEntry& entry, const Base& object)
{
    std::vector<FiltersRefusal> refusals;
    const auto refused = [&](filtersRefusalReason_t reason) {
        refusals.push_back(refusalOf(entry.getId(), object.getType(), reason));
        return nullptr;
    };
    withClass<Kinds>(object, refused, [](const auto&) { return nullptr; });
    return refusals;
}

} // namespace

FiltersRefusals* filtersEntrySetMatchRefusals(FiltersEntry* e, Match* m)
{
    REQUIRE(e != nullptr && m != nullptr,
            "FiltersCommon::FiltersRefusals* FiltersCommon::filtersEntrySetMatchRefusals("
            "FiltersCommon::FiltersEntry*, FiltersCommon::Match*)");
    std::vector<FiltersRefusal> refusals = handleRefusals<MatchKinds>(*e, *m);
    for (const FiltersRefusal& refusal : l3Refusals(*e, m->getType()))
        refusals.push_back(refusal);
    for (FiltersRefusal& refusal : refusals)
        refusal.admittedMatches = refusal.admittedMatches & codesOfferedInC<MatchKinds>();
    return new FiltersRefusals(refusals);
}

FiltersRefusals* filtersEntrySetActionRefusals(FiltersEntry* e, Action* a)
{
    REQUIRE(e != nullptr && a != nullptr,
            "FiltersCommon::FiltersRefusals* FiltersCommon::filtersEntrySetActionRefusals("
            "FiltersCommon::FiltersEntry*, FiltersCommon::Action*)");
    return new FiltersRefusals(handleRefusals<ActionKinds>(*e, *a));
}

namespace {

/** The bytes, of which null may be none. */
std::string bytesAt(const void* bytes, std::size_t size, unsigned line, const char* function)
{
    FILTERS_COMMON_REQUIRE(bytes != nullptr || size == 0, "filter_refusals_c.cpp", line, function);
    return size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size);
}

} // namespace

FiltersRefusals* filtersEntryReadRefusals(const void* bytes, size_t size)
{
    return new FiltersRefusals(readEntryRefusals(
        bytesAt(bytes, size, __LINE__,
                "FiltersCommon::FiltersRefusals* FiltersCommon::filtersEntryReadRefusals("
                "const void*, size_t)")));
}

FiltersRefusals* filtersGroupReadRefusals(const void* bytes, size_t size)
{
    return new FiltersRefusals(readGroupRefusals(
        bytesAt(bytes, size, __LINE__,
                "FiltersCommon::FiltersRefusals* FiltersCommon::filtersGroupReadRefusals("
                "const void*, size_t)")));
}

FiltersGroup* newFiltersGroupFromBytes(const void* bytes, size_t size, FiltersRefusals** losses)
{
    const std::string copy = bytesAt(bytes, size, __LINE__,
                                     "FiltersCommon::FiltersGroup* "
                                     "FiltersCommon::newFiltersGroupFromBytes(const void*, size_t, "
                                     "FiltersCommon::FiltersRefusals**)");
    if (losses == nullptr)
        return new FiltersGroup(copy);
    std::vector<FiltersRefusal> lost;
    auto group = std::make_unique<FiltersGroup>(groupFromBytes(copy, &lost));
    *losses = new FiltersRefusals(lost);
    return group.release();
}

void deleteFiltersRefusals(FiltersRefusals* r)
{
    REQUIRE(r != nullptr,
            "void FiltersCommon::deleteFiltersRefusals(FiltersCommon::FiltersRefusals*)");
    delete r;
}

uint32_t filtersRefusalsGetCount(FiltersRefusals* r)
{
    REQUIRE(r != nullptr,
            "uint32_t FiltersCommon::filtersRefusalsGetCount(FiltersCommon::FiltersRefusals*)");
    return static_cast<uint32_t>(r->reasons.size());
}

// ---------------------------------------------------------------------------------------- reasons

namespace {

FiltersRefusals::Reason& reasonAt(FiltersRefusals* r, uint32_t index, unsigned line,
                                  const char* function)
{
    const std::size_t count = r == nullptr ? 0 : r->reasons.size();
    FILTERS_COMMON_REQUIRE(r != nullptr && index < count, "filter_refusals_c.cpp", line, function);
    return r->reasons[index];
}

/** Stores the value, if there is one, in @p place. @return whether there is one */
template <class T, class Place>
bool give(const std::optional<T>& value, Place* place, unsigned line, const char* function)
{
    FILTERS_COMMON_REQUIRE(place != nullptr, "filter_refusals_c.cpp", line, function);
    if (value.has_value())
        *place = static_cast<Place>(*value);
    return value.has_value();
}

/** The signature of a getter, as reports give it. */
#define SIGNATURE(result, name, arguments)                                                         \
    result " FiltersCommon::" name "(FiltersCommon::FiltersRefusals*, uint32_t" arguments ")"

#define REASON(result, name) reasonAt(r, index, __LINE__, SIGNATURE(result, name, ""))

#define GIVE(member, name, type)                                                                   \
    give(reasonAt(r, index, __LINE__, SIGNATURE("bool", name, ", " type "*")).refusal.member,      \
         place, __LINE__, SIGNATURE("bool", name, ", " type "*"))

} // namespace

filtersErr_t filtersRefusalsGetCode(FiltersRefusals* r, uint32_t index)
{
    return REASON("FiltersCommon::filtersErr_t", "filtersRefusalsGetCode").refusal.code();
}

filtersRefusalReason_t filtersRefusalsGetReason(FiltersRefusals* r, uint32_t index)
{
    return REASON("FiltersCommon::filtersRefusalReason_t", "filtersRefusalsGetReason")
        .refusal.reason;
}

const char* filtersRefusalsGetSentence(FiltersRefusals* r, uint32_t index)
{
    FiltersRefusals::Reason& reason = REASON("const char*", "filtersRefusalsGetSentence");
    if (reason.sentence.empty())
        reason.sentence = reason.refusal.sentence();
    return reason.sentence.c_str();
}

bool filtersRefusalsGetEntry(FiltersRefusals* r, uint32_t index, filtersEntryId_t* place)
{
    return GIVE(entry, "filtersRefusalsGetEntry", "FiltersCommon::filtersEntryId_t");
}

bool filtersRefusalsGetMatch(FiltersRefusals* r, uint32_t index, filtersMatch_t* place)
{
    return GIVE(match, "filtersRefusalsGetMatch", "FiltersCommon::filtersMatch_t");
}

bool filtersRefusalsGetAction(FiltersRefusals* r, uint32_t index, filtersAction_t* place)
{
    return GIVE(action, "filtersRefusalsGetAction", "FiltersCommon::filtersAction_t");
}

bool filtersRefusalsGetPolicerStage(FiltersRefusals* r, uint32_t index, uint32_t* place)
{
    return GIVE(policerStage, "filtersRefusalsGetPolicerStage", "uint32_t");
}

bool filtersRefusalsGetStage(FiltersRefusals* r, uint32_t index, filtersGroupStage_t* place)
{
    return GIVE(stage, "filtersRefusalsGetStage", "FiltersCommon::filtersGroupStage_t");
}

bool filtersRefusalsGetType(FiltersRefusals* r, uint32_t index, filtersGroupType_t* place)
{
    return GIVE(type, "filtersRefusalsGetType", "FiltersCommon::filtersGroupType_t");
}

uint64_t filtersRefusalsGetAdmittedMatches(FiltersRefusals* r, uint32_t index)
{
    return REASON("uint64_t", "filtersRefusalsGetAdmittedMatches").refusal.admittedMatches.bits();
}

uint64_t filtersRefusalsGetAdmittedActions(FiltersRefusals* r, uint32_t index)
{
    return REASON("uint64_t", "filtersRefusalsGetAdmittedActions").refusal.admittedActions.bits();
}

uint64_t filtersRefusalsGetAdmittedPolicerStages(FiltersRefusals* r, uint32_t index)
{
    return REASON("uint64_t", "filtersRefusalsGetAdmittedPolicerStages")
        .refusal.admittedPolicerStages.bits();
}

uint64_t filtersRefusalsGetAdmittedStages(FiltersRefusals* r, uint32_t index)
{
    return REASON("uint64_t", "filtersRefusalsGetAdmittedStages").refusal.admittedStages.bits();
}

uint64_t filtersRefusalsGetAdmittedTypes(FiltersRefusals* r, uint32_t index)
{
    return REASON("uint64_t", "filtersRefusalsGetAdmittedTypes").refusal.admittedTypes.bits();
}

uint64_t filtersRefusalsGetExcludingMatches(FiltersRefusals* r, uint32_t index)
{
    return REASON("uint64_t", "filtersRefusalsGetExcludingMatches").refusal.excludingMatches.bits();
}

bool filtersRefusalsGetOffset(FiltersRefusals* r, uint32_t index, uint64_t* place)
{
    return GIVE(offset, "filtersRefusalsGetOffset", "uint64_t");
}

bool filtersRefusalsGetPart(FiltersRefusals* r, uint32_t index, filtersPart_t* place)
{
    return GIVE(part, "filtersRefusalsGetPart", "FiltersCommon::filtersPart_t");
}

bool filtersRefusalsGetField(FiltersRefusals* r, uint32_t index, uint32_t* place)
{
    return GIVE(field, "filtersRefusalsGetField", "uint32_t");
}

bool filtersRefusalsGetWas(FiltersRefusals* r, uint32_t index, uint64_t* place)
{
    return GIVE(was, "filtersRefusalsGetWas", "uint64_t");
}

bool filtersRefusalsGetBecame(FiltersRefusals* r, uint32_t index, uint64_t* place)
{
    return GIVE(became, "filtersRefusalsGetBecame", "uint64_t");
}

} // namespace FiltersCommon
