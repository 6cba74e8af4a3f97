/**
 * How an entry is written and read, by any writer or reader.
 */
#ifndef FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_WIRE_H
#define FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_WIRE_H

#include "entry_additions.h"
#include "filter_actions_rows.h"
#include "filter_counter_rows.h"
#include "filter_entries_rows.h"
#include "filter_matches_rows.h"
#include "kind_map.h"
#include "kinds.h"
#include "losses.h"
#include "policers.h"

#include <string_view>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

/**
 * Writes and reads entries, with the writers and readers of message_io.h and byte_io.h.
 */
struct EntryWire {
    /** Where the matches and actions of an entry wait until all of it is read. */
    struct Stages {
        KindStage<Match> matches;
        KindStage<Action> actions;
    };

    template <class Writer>
    static void write(Writer& writer, const FiltersEntry& entry)
    {
        EntryRows::of(&entry).write(writer, entry);
        writePolicer<entry_fields::policer_>(writer, entry.policer_);
        writer.elements(entry_fields::matches_(), Objects(entry.matches_),
                        [](auto& element, const Match& match) {
                            writeByKind<MatchKinds, match_fields::type_>(element, match);
                        });
        writer.elements(entry_fields::actions_(), Objects(entry.actions_),
                        [](auto& element, const Action& action) {
                            writeByKind<ActionKinds, action_fields::type_>(element, action);
                        });
        writer.message(entry_fields::counter_(), [&](auto& part) {
            CounterRows::of(&entry.counter_).write(part, entry.counter_);
        });
    }

    /**
     * Reads all but the policer into @p fresh and the stages, which must be empty; the matches are
     * to be added to those of the kinds @p held. Unknown kinds and matches that would combine IPv4
     * and IPv6 are left out.
     * @return the bytes of the policer, valid as long as the input. The policer is built from them
     * only once the reader is known to have understood everything, as the policer library may
     * refuse or report bytes.
     */
    template <class Reader>
    static std::string_view readAllButPolicer(Reader& reader, FiltersEntry& fresh, Stages& stages,
                                              CodeSet<filtersMatch_t> held)
    {
        const Losses::Mark part = beginPart(reader, PART_ENTRY);
        EntryRows::of(&fresh).read(reader, fresh);
        const std::string_view policer = reader.bytes(entry_fields::policer_());
        reader.elements(entry_fields::matches_(), [&](auto& element) {
            const auto kind = fromNumber<filtersMatch_t>(element.number(match_fields::type_()));
            if (!isL3Compatible(kind, held | stages.matches.kinds()))
                report(element,
                       [&](Losses& losses) { losses.addExcluded(kind, stages.matches.kinds()); });
            else if (!readByKind<MatchKinds>(element, kind, stages.matches))
                report(element, [&](Losses& losses) { losses.addUnknown(kind); });
        });
        reader.elements(entry_fields::actions_(), [&](auto& element) {
            const auto kind = fromNumber<filtersAction_t>(element.number(action_fields::type_()));
            if (!readByKind<ActionKinds>(element, kind, stages.actions))
                report(element, [&](Losses& losses) { losses.addUnknown(kind); });
        });
        reader.message(entry_fields::counter_(), [&](auto& message) {
            const Losses::Mark counter = beginPart(message, PART_COUNTER);
            CounterRows::of(&fresh.counter_).read(message, fresh.counter_);
            endPart(message, counter);
        });
        endPart(reader, part, fresh.id_);
        return policer;
    }

    /** Moves what was read into an entry without matches and actions. */
    static void take(FiltersEntry& entry, Stages& stages)
    {
        entry.matches_.take(stages.matches);
        entry.actions_.take(stages.actions);
    }

    /** For an entry without a policer whose bytes @p reader understood. */
    template <class Reader>
    static void setPolicer(const Reader& reader, FiltersEntry& entry, std::string_view bytes)
    {
        if (isNoPolicer(bytes))
            return;
        entry.policer_ = policer::Policer(std::string(bytes));
        report(reader, [&](Losses& losses) { losses.addOfPolicer(entry, bytes); });
    }

    /**
     * Adds what @p reader reads to the entry, leaving out what readAllButPolicer leaves out.
     * @return false, changing nothing, if the reader did not understand the bytes
     */
    template <class Reader>
    static bool read(Reader& reader, FiltersEntry& entry)
    {
        FiltersEntry fresh;
        Stages stages;
        const std::string_view policer =
            readAllButPolicer(reader, fresh, stages, entry.matches_.kinds());
        if (!reader.understood())
            return false;
        setPolicer(reader, fresh, policer);
        auto matchesMemory = entry.matches_.memoryFor(stages.matches);
        auto actionsMemory = entry.actions_.memoryFor(stages.actions);

        // From here on nothing can fail.
        entry.id_ = fresh.id_;
        entry.priority_ = fresh.priority_;
        entry.policer_ = std::move(fresh.policer_);
        entry.counter_ = fresh.counter_;
        entry.matches_.take(stages.matches, std::move(matchesMemory));
        entry.actions_.take(stages.actions, std::move(actionsMemory));
        return true;
    }

private:
    template <class T>
    static constexpr auto rowsOf()
    {
        if constexpr (std::is_base_of_v<Match, T>)
            return MatchRows::of(static_cast<const T*>(nullptr));
        else
            return ActionRows::of(static_cast<const T*>(nullptr));
    }

    /** The casts are safe: every object in an entry is of its kind's class. */
    template <class Kinds, class TypeField, class Writer, class Base>
    static void writeByKind(Writer& writer, const Base& object)
    {
        writer.number(TypeField(), toNumber(object.getType()));
        Kinds::visit(object.getType(), [&](auto kind) {
            using Class = ClassOf<decltype(kind)>;
            rowsOf<Class>().write(writer, static_cast<const Class&>(object));
        });
    }

    /** @return false if the kind is unknown */
    template <class Kinds, class Reader, class Base>
    static bool readByKind(Reader& reader, typename Kinds::Code code, KindStage<Base>& stage)
    {
        return Kinds::dispatch(code, false, [&](auto kind) {
            using Class = ClassOf<decltype(kind)>;
            if constexpr (Reader::REPORTS)
                readReporting<Class>(reader, stage);
            else
                rowsOf<Class>().read(reader, stage.template make<Class>());
            return true;
        });
    }

    /** Reports also that the object read replaces another. */
    template <class Class, class Reader, class Base>
    static void readReporting(Reader& reader, KindStage<Base>& stage)
    {
        constexpr bool IS_MATCH = std::is_same_v<Base, Match>;
        const Losses::Mark part = beginPart(reader, IS_MATCH ? PART_MATCH : PART_ACTION);
        const bool isReplaced = stage.kinds().contains(Class::KIND);
        rowsOf<Class>().read(reader, stage.template make<Class>());
        if (isReplaced)
            reader.losses().add(
                FiltersRefusal(IS_MATCH ? REFUSAL_MATCH_REPLACED : REFUSAL_ACTION_REPLACED));
        endPart(reader, part, Class::KIND);
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_WIRE_H
