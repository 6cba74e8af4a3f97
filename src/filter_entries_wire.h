#ifndef FILTER_COMMON_SRC_FILTER_ENTRIES_WIRE_H
#define FILTER_COMMON_SRC_FILTER_ENTRIES_WIRE_H

#include "entry_additions.h"
#include "filter_actions_fields.h"
#include "filter_counter_fields.h"
#include "filter_entries.h"
#include "filter_matches_fields.h"
#include "kinds.h"
#include "ordered_maps.h"
#include "policers.h"

#include <type_traits>
#include <utility>

namespace FiltersCommon {

/** Reading leaves out what it may not take, and says nothing. */
struct InSilence {
    template <class... Anything>
    void operator()(const Anything&...) const
    {}
};

/**
 * An entry as a writer writes it and a reader reads it. The writers and readers are those of
 * message_io.h and byte_io.h.
 */
struct EntryWire {
    template <class Writer>
    static void write(Writer& writer, const FiltersEntry& entry)
    {
        writer.number(entry_fields::id_(), entry.id_);
        writer.number(entry_fields::priority_(), entry.priority_);
        writePolicer<entry_fields::policer_>(writer, entry.policer_);
        writer.elements(entry_fields::matches_(), entry.matches_,
                        [](auto& element, const auto& match) {
                            writeByKind<MatchKinds, match_fields::type_>(element, *match.second);
                        });
        writer.elements(entry_fields::actions_(), entry.actions_,
                        [](auto& element, const auto& action) {
                            writeByKind<ActionKinds, action_fields::type_>(element, *action.second);
                        });
        writer.message(entry_fields::counter_(),
                       [&](auto& part) { writeCounter(part, entry.counter_); });
    }

    /**
     * Adds what @p reader reads to the entry. Matches that IPv4 and IPv6 exclude and unknown kinds
     * are left out: @p leaveOut is given the identifier, the kind, the reason, and the matches that
     * were read before.
     * @return false, and nothing is changed, if the reader did not understand the bytes
     */
    template <class Reader, class LeaveOut = InSilence>
    static bool read(Reader& reader, FiltersEntry& entry, LeaveOut leaveOut = LeaveOut())
    {
        const auto id = fromNumber<filtersEntryId_t>(reader.number(entry_fields::id_()));
        const auto priority =
            fromNumber<filtersEntryPriority_t>(reader.number(entry_fields::priority_()));
        policer::Policer policer = readPolicer<entry_fields::policer_>(reader);
        FiltersEntry::MatchMap matches;
        reader.elements(entry_fields::matches_(), [&](auto& element) {
            const auto kind = fromNumber<filtersMatch_t>(element.number(match_fields::type_()));
            if (!isL3Compatible(kind, entry.matches_) || !isL3Compatible(kind, matches))
                leaveOut(id, kind, REFUSAL_IPV4_WITH_IPV6, matches);
            else if (!readByKind<MatchKinds>(element, kind, matches))
                leaveOut(id, kind, REFUSAL_UNKNOWN_MATCH_KIND, matches);
        });
        FiltersEntry::ActionMap actions;
        reader.elements(entry_fields::actions_(), [&](auto& element) {
            const auto kind = fromNumber<filtersAction_t>(element.number(action_fields::type_()));
            if (!readByKind<ActionKinds>(element, kind, actions))
                leaveOut(id, kind, REFUSAL_UNKNOWN_ACTION_KIND, matches);
        });
        Counter counter;
        reader.message(entry_fields::counter_(), [&](auto& part) { counter = readCounter(part); });
        if (!reader.understood())
            return false;

        // From here on nothing can fail.
        entry.id_ = id;
        entry.priority_ = priority;
        entry.policer_ = std::move(policer);
        entry.counter_ = counter;
        moveNodes(entry.matches_, matches);
        moveNodes(entry.actions_, actions);
        return true;
    }

private:
    template <class T>
    static auto fieldsOf(Kind<T>)
    {
        if constexpr (std::is_base_of_v<Match, T>)
            return MatchFieldsOf<T>();
        else
            return ActionFieldsOf<T>();
    }

    /** An entry holds no object that lies about its kind. */
    template <class Kinds, class TypeField, class Writer, class Base>
    static void writeByKind(Writer& writer, const Base& object)
    {
        writer.number(TypeField(), toNumber(object.getType()));
        Kinds::visit(object.getType(), [&](auto kind) {
            using Class = ClassOf<decltype(kind)>;
            fieldsOf(kind).write(writer, static_cast<const Class&>(object));
        });
    }

    /** @return false if the kind is unknown */
    template <class Kinds, class Reader, class Map>
    static bool readByKind(Reader& reader, typename Map::key_type code, Map& objects)
    {
        return Kinds::dispatch(code, false, [&](auto kind) {
            auto object = makeBlank<ClassOf<decltype(kind)>>();
            fieldsOf(kind).read(reader, *object);
            storeByKind(objects, std::move(object));
            return true;
        });
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_FILTER_ENTRIES_WIRE_H
