/**
 * A group of packet-filter rules: FiltersGroup, and the tables of what it admits.
 */
#ifndef FILTER_COMMON_FILTER_GROUPS_H
#define FILTER_COMMON_FILTER_GROUPS_H

#include "filter_entries.h"

#pragma GCC visibility push(default)

namespace FiltersCommon {

class FiltersGroupPB;
struct FILTERS_COMMON_INTERNAL GroupRows; // describes the members
struct FILTERS_COMMON_INTERNAL GroupWire; // writes and reads them

/**
 * Entries, keyed by identifier, and the stage and type that decide which entries are admitted.
 *
 * The type decides which match kinds an entry may hold; the stage decides which action kinds and
 * policers, and which types the group may have. The group's stage and type admit each of its
 * entries at all times. Stage and type fit each other if set through setStage and setType; a pair
 * read from the wire is deliberately not checked.
 *
 * The group owns copies of its entries and visits them in ascending order of identifier. An
 * operation that refuses changes nothing. If memory runs out, std::bad_alloc is thrown and nothing
 * is changed.
 */
class FiltersGroup {
public:
    using EntryMap = std::map<filtersEntryId_t, FiltersEntry>;

    /** For each group type, the match kinds that it admits. */
    static const std::map<filtersGroupType_t, std::set<filtersMatch_t>> TypeDescription_;
    /** For each group stage, the group types that it admits. */
    static const std::map<filtersGroupStage_t, std::set<filtersGroupType_t>> StageTypesDescription_;
    /** For each group stage, the action kinds that it admits. */
    static const std::map<filtersGroupStage_t, std::set<filtersAction_t>> StageActionsDescription_;

    /** Priority 0, stage 0, type 0, no entries. */
    explicit FiltersGroup(const filtersGroupId_t& id) : id_(id) {}
    FiltersGroup(const FiltersGroup& other);
    FiltersGroup(FiltersGroup&& other) noexcept = default;
    FiltersGroup& operator=(const FiltersGroup& other);
    FiltersGroup& operator=(FiltersGroup&& other) noexcept = default;
    ~FiltersGroup();
    /**
     * Rebuilds a group from the bytes written by serialize(). Any bytes are accepted: if they do
     * not parse, the group holds what the parser read before it gave up; if there are more than
     * 2 GiB - 1 of them, nothing is read. @see convertFromFiltersGroupPB
     */
    explicit FiltersGroup(const std::string& bytes);
    /** Throws std::logic_error if @p s has a size but no data. */
    explicit FiltersGroup(FiltersSerialized& s);

    filtersGroupId_t getId() const { return id_; }

    void setPriority(const filtersGroupPriority_t& priority) { priority_ = priority; }
    filtersGroupPriority_t getPriority() const { return priority_; }

    /** @return the code of groupStageValidation, or of the first entry that does not fit */
    filtersErr_t setStage(const filtersGroupStage_t& stage);
    filtersGroupStage_t getStage() const { return stage_; }

    /** @return the code of groupStageValidation, or of the first entry that does not fit */
    filtersErr_t setType(const filtersGroupType_t& type);
    filtersGroupType_t getType() const { return type_; }

    /**
     * Stores a copy of @p entry. An entry with the same identifier is replaced; deliberately, that
     * is not refused.
     * @return the first refusal of groupMatchValidation, groupActionValidation and
     * groupPolicerValidation
     */
    filtersErr_t insertEntry(const FiltersEntry& entry);
    /**
     * Like insertEntry, but takes the matches and actions over instead of copying them, as move
     * assignment does. An entry that is refused keeps them.
     */
    filtersErr_t takeEntry(FiltersEntry&& entry);

    /** @return FILTERS_ERR_NOT_FOUND if there is no such entry */
    filtersErr_t removeEntry(const filtersEntryId_t& id);

    /** Copies of all entries. */
    EntryMap getEntries() const;
    /** The entries themselves, valid until the group is changed or destroyed. */
    const EntryMap& getEntriesRef() const { return entries_; }

    bool operator==(const FiltersGroup& other) const;
    bool operator!=(const FiltersGroup& other) const { return !(*this == other); }

    // These checks look only at their arguments, not at the group's own stage and type.

    /**
     * Whether a group of @p type may hold the entry's matches.
     * @return FILTERS_ERR_INVALID for an unknown type, whatever the entry;
     * FILTERS_ERR_MATCH_NOT_ALLOWED
     */
    filtersErr_t groupMatchValidation(const FiltersEntry& entry, filtersGroupType_t type) const;

    /**
     * Whether a group at @p stage may hold the entry's actions.
     * @return FILTERS_ERR_UNKNOWN_STAGE, whatever the entry; FILTERS_ERR_ACTION_NOT_ALLOWED
     */
    filtersErr_t groupActionValidation(const FiltersEntry& entry, filtersGroupStage_t stage) const;

    /**
     * Whether a group at @p stage may have @p type.
     * @return FILTERS_ERR_UNKNOWN_STAGE; FILTERS_ERR_TYPE_NOT_ALLOWED, for unknown types too
     */
    filtersErr_t groupStageValidation(filtersGroupStage_t stage, filtersGroupType_t type) const;

    /**
     * Whether a group at @p stage may hold @p policer. A policer of policer::STAGE_NONE is admitted
     * at every stage, even an unknown one.
     * @return FILTERS_ERR_UNKNOWN_STAGE; FILTERS_ERR_POLICER_STAGE
     */
    filtersErr_t groupPolicerValidation(const policer::Policer& policer,
                                        filtersGroupStage_t stage) const;

    /** Callers must include filter_groups.pb.h. */
    FiltersGroupPB convertToFiltersGroupPB() const;

    /**
     * Reads identifier and priority (low 16 bits), stage and type (unchecked) from @p pb, and
     * inserts its entries; those that the new stage and type do not admit are silently dropped.
     * Entries that the group already holds are kept, unchecked.
     */
    void convertFromFiltersGroupPB(const FiltersGroupPB* pb);

    /** Replaces the contents of @p out with the group's bytes, or none if they exceed 2 GiB - 1. */
    void serialize(std::string* out) const;
    /** Passes the group's bytes to FiltersSerialized::setData. */
    void serialize(FiltersSerialized* out) const;

private:
    friend struct GroupRows;
    friend struct GroupWire;

    FILTERS_COMMON_INTERNAL
    filtersErr_t admits(const FiltersEntry& entry, filtersGroupStage_t stage,
                        filtersGroupType_t type) const;

    filtersGroupId_t id_;
    filtersGroupPriority_t priority_ = 0;
    filtersGroupStage_t stage_ = GROUP_STAGE_0;
    filtersGroupType_t type_ = GROUP_TYPE_0;
    EntryMap entries_;
};

} // namespace FiltersCommon

/** Dumps the group and all its entries. Declared at global scope. */
std::ostream& operator<<(std::ostream& out, const FiltersCommon::FiltersGroup& group);

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_GROUPS_H
