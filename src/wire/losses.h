/**
 * What is lost when bytes are read, and the readers that report it.
 */
#ifndef FILTER_COMMON_SRC_WIRE_LOSSES_H
#define FILTER_COMMON_SRC_WIRE_LOSSES_H

#include "filter_entries.h"
#include "filter_refusal.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace FiltersCommon {

/**
 * Collects what reading loses. Losses may be reported in any order; they are taken in that of the
 * group: first those of the group itself, then those of each entry, in the order of the bytes.
 */
class Losses {
public:
    /** What was the current part before another began. */
    struct Mark {
        filtersPart_t part;
        std::size_t first; /**< of the losses that were reported since */
    };

    /** Forgets everything: the reader that reported it did not understand the bytes. */
    void clear() { *this = Losses(); }
    std::vector<FiltersRefusal> take();

    // ------------------------------------------------------------------------------------ places

    /** What follows concerns the group itself, as at first. */
    void atGroup() { place_ = GROUP; }
    /** What follows concerns an entry of the group, counted from 0 in the order of the bytes. */
    void atEntry(std::size_t place) { place_ = FIRST_ENTRY + 2 * place; }
    /** What follows concerns whether and how the group holds that entry. */
    void atAdmission(std::size_t place) { place_ = FIRST_ENTRY + 2 * place + 1; }

    /** What follows concerns a part, until end() says which one it is. */
    Mark begin(filtersPart_t part);
    void end(Mark mark) { part_ = mark.part; }
    void end(Mark mark, filtersEntryId_t entry);
    void end(Mark mark, filtersMatch_t kind);
    void end(Mark mark, filtersAction_t kind);

    // ------------------------------------------------------------------------------------ losses

    void add(const FiltersRefusal& refusal) { addAt(place_, refusal); }
    /** A loss in a field of the current part. The result is valid until the next one. */
    FiltersRefusal& addInField(filtersRefusalReason_t reason, std::uint32_t field);
    /** A number or a length that was changed. */
    void addChange(filtersRefusalReason_t reason, std::uint32_t field, std::uint64_t was,
                   std::uint64_t became, std::optional<std::uint64_t> offset = {});

    /** The bytes could not be read from @p offset on. */
    void addNotParsed(std::optional<std::uint64_t> offset);

    /** The match cannot stand beside those of the kinds @p read before it. */
    void addExcluded(filtersMatch_t kind, CodeSet<filtersMatch_t> read);
    void addUnknown(filtersMatch_t kind);
    void addUnknown(filtersAction_t kind);

    /** What the policer of an entry does not hold of the bytes that it was read from. */
    void addOfPolicer(const FiltersEntry& entry, std::string_view bytes);
    /** The entry is not admitted at this stage and type. */
    void addNotAdmitted(const FiltersEntry& entry, filtersGroupStage_t stage,
                        filtersGroupType_t type);

private:
    static constexpr std::size_t NOT_PARSED = 0;
    static constexpr std::size_t GROUP = 1;
    static constexpr std::size_t FIRST_ENTRY = 2;

    struct Placed {
        std::size_t place;
        std::size_t report; ///< counted from 0
        FiltersRefusal refusal;
    };

    void addAt(std::size_t place, const FiltersRefusal& refusal)
    {
        losses_.push_back({place, losses_.size(), refusal});
    }

    std::size_t place_ = GROUP;
    filtersPart_t part_ = PART_GROUP;
    std::vector<Placed> losses_;
};

/** The base of readers that report nothing: the reports are not even compiled. */
struct Silent {
    static constexpr bool REPORTS = false;
};

/** The base of readers that report what is lost. */
class Reporting {
public:
    static constexpr bool REPORTS = true;

    explicit Reporting(Losses& losses) : losses_(&losses) {}

    Losses& losses() const { return *losses_; }

private:
    Losses* losses_;
};

/** Calls @p tell with the losses of a reader that reports them. */
template <class Reader, class Tell>
void report([[maybe_unused]] const Reader& reader, [[maybe_unused]] Tell tell)
{
    if constexpr (Reader::REPORTS)
        tell(reader.losses());
}

template <class Reader>
Losses::Mark beginPart([[maybe_unused]] const Reader& reader, [[maybe_unused]] filtersPart_t part)
{
    if constexpr (Reader::REPORTS)
        return reader.losses().begin(part);
    else
        return {};
}

template <class Reader, class... Which>
void endPart(const Reader& reader, Losses::Mark mark, Which... which)
{
    report(reader, [&](Losses& losses) { losses.end(mark, which...); });
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_LOSSES_H
