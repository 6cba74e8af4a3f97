#include "filter_entries.h"

#include "entry_additions.h"
#include "kinds.h"
#include "messages.h"
#include "ordered_maps.h"
#include "serialized_bytes.h"

#include "filter_entries.pb.h"

namespace FiltersCommon {

FiltersEntry::FiltersEntry(const std::string& bytes) : FiltersEntry()
{
    parseMessage<FiltersEntryPB>(
        bytes, [this](const FiltersEntryPB* pb) { convertFromFiltersEntryPB(pb); });
}

FiltersEntry::FiltersEntry(const FiltersSerialized& s) : FiltersEntry(bytesOf(s)) {}

void FiltersEntry::convertToFiltersEntryPB(FiltersEntryPB* pb) const
{
    pb->set_id_(id_);
    pb->set_priority_(priority_);
    pb->set_policer_(policer_.Serialize());
    counter_.Serialize(pb->mutable_counter_());
    // Room is made first: a message that cannot grow drops what it was about to append.
    reserveMore(pb->mutable_matches_(), matches_.size());
    for (const auto& element : matches_)
        element.second->convertToMatchPB(pb->add_matches_());
    reserveMore(pb->mutable_actions_(), actions_.size());
    for (const auto& element : actions_)
        element.second->convertToActionPB(pb->add_actions_());
}

namespace {

/** The matches of a message that may stand beside those of @p held and beside each other. */
FiltersEntry::MatchMap readMatches(const FiltersEntryPB& pb, const FiltersEntry::MatchMap& held)
{
    FiltersEntry::MatchMap matches;
    for (const MatchPB& element : pb.matches_()) {
        const auto code = static_cast<filtersMatch_t>(element.type_());
        if (!isL3Compatible(code, held) || !isL3Compatible(code, matches))
            continue;
        MatchKinds::visit(code, [&](auto kind) {
            auto match = makeBlank<ClassOf<decltype(kind)>>();
            match->convertFromMatchPB(&element);
            storeByKind(matches, std::move(match));
        });
    }
    return matches;
}

FiltersEntry::ActionMap readActions(const FiltersEntryPB& pb)
{
    FiltersEntry::ActionMap actions;
    for (const ActionPB& element : pb.actions_()) {
        const auto code = static_cast<filtersAction_t>(element.type_());
        ActionKinds::visit(code, [&](auto kind) {
            auto action = makeBlank<ClassOf<decltype(kind)>>();
            action->convertFromActionPB(&element);
            storeByKind(actions, std::move(action));
        });
    }
    return actions;
}

} // namespace

void FiltersEntry::convertFromFiltersEntryPB(const FiltersEntryPB* pb)
{
    MatchMap matches = readMatches(*pb, matches_);
    ActionMap actions = readActions(*pb);
    policer_ = policer::Policer(pb->policer_());
    // From here on nothing can fail.
    id_ = static_cast<filtersEntryId_t>(pb->id_());
    priority_ = pb->priority_();
    counter_ = Counter(pb->counter_());
    moveNodes(matches_, matches);
    moveNodes(actions_, actions);
}

void FiltersEntry::serialize(std::string* out) const
{
    serializeMessage<FiltersEntryPB>(out,
                                     [this](FiltersEntryPB* pb) { convertToFiltersEntryPB(pb); });
}

void FiltersEntry::serialize(FiltersSerialized* out) const { serializeInto(out, *this); }

} // namespace FiltersCommon
