#include "filters.h"
#include "operations.h"

#include <algorithm>

namespace bench {

using namespace FiltersCommon;

namespace {

using Entries = std::vector<FiltersEntry>;

Entries entriesOf(const Rules& rules)
{
    Entries entries;
    entries.reserve(rules.size());
    for (std::size_t id = 0; id < rules.size(); ++id)
        // Assigned, because only assignment moves an entry.
        entries.emplace_back() = entryOf(id, rules[id]);
    return entries;
}

/** The operation that calls @p act with each entry; each call has to return true. */
template <class Act>
Operation withEach(const std::shared_ptr<Entries>& entries, Act act)
{
    return asking(entries->size(), [entries, act] {
        bool done = true;
        for (FiltersEntry& entry : *entries)
            done = act(entry) && done;
        return done;
    });
}

// No rule asks for a time to live, so a match of it can be added to every entry.

bool addMatch(FiltersEntry& entry) { return entry.setMatch(MatchTTL(64)) == FILTERS_OK; }

bool dropMatch(FiltersEntry& entry) { return entry.deleteMatch(MATCH_TTL) == FILTERS_OK; }

void all(Entries& entries, bool (*act)(FiltersEntry&))
{
    std::for_each(entries.begin(), entries.end(), act);
}

Operation matchSet(const Rules& rules)
{
    auto entries = std::make_shared<Entries>(entriesOf(rules));
    Operation operation = withEach(entries, addMatch);
    operation.prepare = [entries] { all(*entries, dropMatch); };
    return operation;
}

Operation matchGet(const Rules& rules)
{
    auto entries = std::make_shared<Entries>(entriesOf(rules));
    all(*entries, addMatch);
    return withEach(entries, [](FiltersEntry& entry) {
        MatchTTL match(0);
        return entry.getMatch(match) == FILTERS_OK && match.getTTL() == 64;
    });
}

Operation matchDelete(const Rules& rules)
{
    auto entries = std::make_shared<Entries>(entriesOf(rules));
    Operation operation = withEach(entries, dropMatch);
    operation.prepare = [entries] { all(*entries, addMatch); };
    return operation;
}

Operation entryBuild(const Rules& rules)
{
    return making(rules.size(), [rules] { return entriesOf(rules); });
}

Operation entryCopy(const Rules& rules)
{
    auto copies = std::make_shared<Entries>();
    copies->reserve(rules.size());
    Operation operation;
    operation.rules = rules.size();
    operation.run = [copies, entries = entriesOf(rules)] {
        for (const FiltersEntry& entry : entries)
            copies->push_back(entry);
    };
    operation.clear = [copies] { copies->clear(); };
    return operation;
}

std::vector<std::string> bytesOfEach(const Entries& entries)
{
    std::vector<std::string> bytes(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i)
        entries[i].serialize(&bytes[i]);
    return bytes;
}

Operation entryToBytes(const Rules& rules)
{
    return making(rules.size(), [entries = std::make_shared<Entries>(entriesOf(rules))] {
        return bytesOfEach(*entries);
    });
}

Operation entryFromBytes(const Rules& rules)
{
    return making(rules.size(), [bytes = bytesOfEach(entriesOf(rules))] {
        Entries entries;
        entries.reserve(bytes.size());
        for (const std::string& each : bytes)
            entries.emplace_back(each);
        return entries;
    });
}

} // namespace

Descriptions filtersEntryOperations()
{
    return {
        {"filters", "match_set", matchSet},
        {"filters", "match_get", matchGet},
        {"filters", "match_delete", matchDelete},
        {"filters", "entry_build", entryBuild},
        {"filters", "entry_copy", entryCopy},
        {"filters", "entry_to_bytes", entryToBytes},
        {"filters", "entry_from_bytes", entryFromBytes},
    };
}

} // namespace bench
