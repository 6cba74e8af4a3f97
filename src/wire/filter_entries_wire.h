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
#include "kinds.h"
#include "left_out.h"
#include "ordered_maps.h"
#include "policers.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

/**
 * Writes and reads entries, with the writers and readers of message_io.h and byte_io.h.
 */
struct EntryWire {
    template <class Writer>
    static void write(Writer& writer, const FiltersEntry& entry)
    {
        EntryRows::of(&entry).write(writer, entry);
        writePolicer<entry_fields::policer_>(writer, entry.policer_);
        writer.elements(entry_fields::matches_(), entry.matches_,
                        [](auto& element, const auto& match) {
                            writeByKind<MatchKinds, match_fields::type_>(element, *match.second);
                        });
        writer.elements(entry_fields::actions_(), entry.actions_,
                        [](auto& element, const auto& action) {
                            writeByKind<ActionKinds, action_fields::type_>(element, *action.second);
                        });
        writer.message(entry_fields::counter_(), [&](auto& part) {
            CounterRows::of(&entry.counter_).write(part, entry.counter_);
        });
    }

    /**
     * Reads all but the policer into @p fresh, an empty entry whose matches are to be added to
     * @p held. Unknown kinds and matches that would combine IPv4 and IPv6 are left out and, unless
     * it is null, reported to @p leftOut.
     * @return the bytes of the policer, valid as long as the input. The policer is built from them
     * only once the reader is known to have understood everything, as the policer library may
     * refuse or report bytes.
     */
    template <class Reader>
    static std::string_view readAllButPolicer(Reader& reader, FiltersEntry& fresh,
                                              const FiltersEntry::MatchMap& held, LeftOut* leftOut,
                                              std::size_t place = 0)
    {
        EntryRows::of(&fresh).read(reader, fresh);
        const std::string_view policer = reader.bytes(entry_fields::policer_());
        reader.elements(entry_fields::matches_(), [&](auto& element) {
            const auto kind = fromNumber<filtersMatch_t>(element.number(match_fields::type_()));
            const auto report = [&](filtersRefusalReason_t reason) {
                if (leftOut != nullptr)
                    leftOut->match(place, fresh.id_, kind, reason, fresh.matches_);
            };
            if (!isL3Compatible(kind, held) || !isL3Compatible(kind, fresh.matches_))
                report(REFUSAL_IPV4_WITH_IPV6);
            else if (!readByKind<MatchKinds>(element, kind, fresh.matches_))
                report(REFUSAL_UNKNOWN_MATCH_KIND);
        });
        reader.elements(entry_fields::actions_(), [&](auto& element) {
            const auto kind = fromNumber<filtersAction_t>(element.number(action_fields::type_()));
            if (!readByKind<ActionKinds>(element, kind, fresh.actions_) && leftOut != nullptr)
                leftOut->action(place, fresh.id_, kind, REFUSAL_UNKNOWN_ACTION_KIND);
        });
        reader.message(entry_fields::counter_(), [&](auto& part) {
            CounterRows::of(&fresh.counter_).read(part, fresh.counter_);
        });
        return policer;
    }

    /** For an entry whose bytes were understood. */
    static void setPolicer(FiltersEntry& entry, std::string_view bytes)
    {
        entry.policer_ = policerOf(bytes);
    }

    /**
     * Adds what @p reader reads to the entry, leaving out what readAllButPolicer leaves out.
     * @return false, changing nothing, if the reader did not understand the bytes
     */
    template <class Reader>
    static bool read(Reader& reader, FiltersEntry& entry, LeftOut* leftOut = nullptr)
    {
        FiltersEntry fresh;
        const std::string_view policer = readAllButPolicer(reader, fresh, entry.matches_, leftOut);
        if (!reader.understood())
            return false;
        setPolicer(fresh, policer);

        // From here on nothing can fail.
        entry.id_ = fresh.id_;
        entry.priority_ = fresh.priority_;
        entry.policer_ = std::move(fresh.policer_);
        entry.counter_ = fresh.counter_;
        moveNodes(entry.matches_, fresh.matches_);
        moveNodes(entry.actions_, fresh.actions_);
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
    template <class Kinds, class Reader, class Map>
    static bool readByKind(Reader& reader, typename Map::key_type code, Map& objects)
    {
        return Kinds::dispatch(code, false, [&](auto kind) {
            using Class = ClassOf<decltype(kind)>;
            auto object = std::make_unique<Class>();
            rowsOf<Class>().read(reader, *object);
            storeByKind(objects, std::move(object));
            return true;
        });
    }
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_WIRE_FILTER_ENTRIES_WIRE_H
