/**
 * What threads may do at the same time: use what is built on first use, work on objects of their
 * own, and read objects that no thread changes. The `thread` preset runs it under ThreadSanitizer.
 *
 * ctest runs each test in its own process, so that its first use is really the first.
 */
#include "c_constructors.h"
#include "c_support.h"
#include "kind_codes.h"
#include "named_entries.h"
#include "wire_bytes.h"
#include "wire_support.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <ios>
#include <list>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

constexpr int THREADS = 4;

/** Runs @p work in all threads at once, each with its number, and waits for them. */
void inThreads(const std::function<void(int)>& work)
{
    std::atomic<int> waiting{THREADS};
    std::vector<std::thread> threads;
    for (int number = 0; number < THREADS; ++number)
        threads.emplace_back([&, number] {
            for (--waiting; waiting != 0;)
                std::this_thread::yield();
            work(number);
        });
    for (std::thread& thread : threads)
        thread.join();
}

/**
 * Dumps one object after the other into one stream for each thread: the locks that streams share
 * when they are made would hide other data races from the sanitizer.
 */
class Dumps {
public:
    template <class T>
    std::string operator()(const T& object)
    {
        using ::operator<<;
        out_.str(std::string());
        out_.flags(std::ios::fmtflags(std::ios::dec | std::ios::skipws));
        out_ << object;
        return out_.str();
    }

private:
    std::ostringstream out_;
};

FiltersEntry ruleOf(int thread, int number)
{
    FiltersEntry entry(static_cast<filtersEntryId_t>(number));
    entry.setPriority(static_cast<filtersEntryPriority_t>(thread));
    entry.setPolicer(policerOf(policer::STAGE_INGRESS, policer::Mode::TR_TCM));
    entry.setMatch(MatchIngressPorts({limId(0, thread, 0, 1), limId(0, thread, 0, 2)}));
    entry.setMatch(MatchExternalVlanId({1, 2, static_cast<unsigned short>(number)}));
    entry.setMatch(MatchSrcIPv4(ipv4("192.0.2.1")));
    entry.setAction(ActionRedirect(limId(0, thread, 0, 3)));
    entry.setAction(ActionReplaceDstMac(mac("1:2:3:4:5:6")));
    return entry;
}

FiltersGroup groupOf(int thread)
{
    FiltersGroup group(static_cast<filtersGroupId_t>(thread));
    EXPECT_EQ(group.setStage(GROUP_STAGE_2), FILTERS_OK);
    EXPECT_EQ(group.setType(GROUP_TYPE_3), FILTERS_OK);
    for (int number = 0; number < 20; ++number)
        EXPECT_EQ(group.insertEntry(ruleOf(thread, number)), FILTERS_OK);
    return group;
}

// -------------------------------------------------------------------------------------- first use

TEST(FirstUse, OfThePolicerCheck)
{
    inThreads([](int thread) {
        const FiltersGroup group(static_cast<filtersGroupId_t>(thread));
        const policer::Policer policer = policerAt(policer::STAGE_EGRESS);
        EXPECT_EQ(group.groupPolicerValidation(policer, GROUP_STAGE_3), FILTERS_OK);
        EXPECT_EQ(group.groupPolicerValidation(policer, GROUP_STAGE_2), FILTERS_ERR_POLICER_STAGE);
    });
}

TEST(FirstUse, OfWriting)
{
    std::vector<std::string> bytes(THREADS);
    inThreads([&](int thread) {
        FiltersEntry entry(7);
        entry.setMatch(MatchAll());
        entry.serialize(&bytes[static_cast<std::size_t>(thread)]);
    });
    for (const std::string& written : bytes)
        EXPECT_EQ(written, bytes.front());
    EXPECT_EQ(FiltersEntry(bytes.front()).getId(), 7);
}

TEST(FirstUse, OfReading)
{
    using namespace wire;
    const std::string bytes = number(1, 7) + number(2, 8) + delimited(3, "") +
                              delimited(4, number(1, 0)) +
                              delimited(6, number(1, 0) + number(2, 0));
    inThreads([&](int) { EXPECT_EQ(FiltersEntry(bytes).getMatchesRef().size(), 1u); });
}

/** Bytes that the library does not write take another path. */
TEST(FirstUse, OfReadingWhatNobodyWrote)
{
    using namespace wire;
    const std::string entry = delimited(4, number(1, 0)) + number(100, 1) + number(1, 7);
    const std::string group = delimited(5, entry) + number(4, 3) + delimited(100, "unknown");
    inThreads([&](int) {
        EXPECT_EQ(FiltersGroup(group).getEntriesRef().count(7), 1u);
        EXPECT_EQ(FiltersEntry(entry).getId(), 7);
    });
}

TEST(FirstUse, OfMessages)
{
    inThreads([](int thread) {
        const FiltersGroup group = groupOf(thread);
        const FiltersGroupPB pb = group.convertToFiltersGroupPB();
        FiltersGroup read(0);
        read.convertFromFiltersGroupPB(&pb);
        EXPECT_TRUE(read == group);
    });
}

TEST(FirstUse, OfDumps)
{
    inThreads([](int thread) { EXPECT_FALSE(Dumps()(groupOf(thread)).empty()); });
}

TEST(FirstUse, OfTheCInterface)
{
    inThreads([](int) {
        const Handle<FiltersGroup> group(newFiltersGroup(1));
        const Handle<FiltersEntry> entry(newFiltersEntry(7));
        for (const Constructor& constructor : MATCH_CONSTRUCTORS) {
            const Handle<Match> match(static_cast<Match*>(constructor.create()));
            filtersEntrySetMatch(entry.get(), match.get());
            filtersEntryGetMatch(entry.get(), match.get());
            filtersEntryDeleteMatch(entry.get(), match->getType());
        }
        for (const Constructor& constructor : ACTION_CONSTRUCTORS) {
            const Handle<Action> action(static_cast<Action*>(constructor.create()));
            EXPECT_EQ(filtersEntrySetAction(entry.get(), action.get()), FILTERS_OK);
            EXPECT_EQ(filtersEntryGetAction(entry.get(), action.get()), FILTERS_OK);
            EXPECT_EQ(filtersEntryDeleteAction(entry.get(), action->getType()), FILTERS_OK);
        }
        EXPECT_EQ(filtersGroupInsertEntry(group.get(), entry.get()), FILTERS_OK);
        entriesStruct listing;
        filtersGroupGetEntries(group.get(), &listing);
        EXPECT_EQ(listing.count, 1);
        deleteFiltersEntriesStruct(&listing);
    });
}

// ------------------------------------------------------------------------------ one thread's own

TEST(Threads, WorkOnGroupsOfTheirOwn)
{
    inThreads([](int thread) {
        const FiltersGroup group = groupOf(thread);
        Dumps dumpOf;
        for (int round = 0; round < 20; ++round) {
            FiltersGroup read(serialized(group));
            EXPECT_TRUE(read == group);
            EXPECT_EQ(dumpOf(read), dumpOf(group));
            EXPECT_EQ(read.removeEntry(3), FILTERS_OK);
            EXPECT_EQ(read.setType(GROUP_TYPE_2), FILTERS_OK);
            EXPECT_EQ(read.insertEntry(ruleOf(thread, 3)), FILTERS_OK);
            FiltersGroup copy(read);
            EXPECT_EQ(copy.setType(GROUP_TYPE_3), FILTERS_OK);
            EXPECT_TRUE(copy == group);
            read = std::move(copy);
            EXPECT_EQ(serialized(read), serialized(group));
        }
    });
}

/** A thread may take over what another thread made. */
TEST(Threads, HandOverWhatTheyMade)
{
    std::vector<FiltersGroup> groups(THREADS, FiltersGroup(0));
    inThreads([&](int thread) { groups[static_cast<std::size_t>(thread)] = groupOf(thread); });
    inThreads([&](int thread) {
        FiltersGroup taken(std::move(groups[static_cast<std::size_t>((thread + 1) % THREADS)]));
        EXPECT_TRUE(taken == groupOf((thread + 1) % THREADS));
        EXPECT_EQ(taken.removeEntry(5), FILTERS_OK);
    });
}

// --------------------------------------------------------------------------- what nobody changes

template <class Table>
std::size_t sizeOf(const Table& table)
{
    std::size_t size = 0;
    for (const auto& row : table)
        size += row.second.size();
    return size;
}

TEST(Threads, ReadTheTables)
{
    inThreads([](int) {
        for (int round = 0; round < 100; ++round) {
            EXPECT_EQ(FiltersEntry::validMatchTypes.size(), MATCH_KINDS + 1);
            EXPECT_EQ(FiltersEntry::validActionTypes.size(), ACTION_KINDS);
            EXPECT_EQ(FiltersEntry::ipv4OnlyMatchTypes.count(MATCH_SRC_IPV4), 1u);
            EXPECT_EQ(FiltersEntry::ipv6OnlyMatchTypes.count(MATCH_SRC_IPV4), 0u);
            EXPECT_EQ(FiltersGroup::TypeDescription_.size(), 10u);
            EXPECT_EQ(FiltersGroup::StageTypesDescription_.size(), 4u);
            EXPECT_EQ(FiltersGroup::StageActionsDescription_.size(), 4u);
            EXPECT_EQ(sizeOf(FiltersGroup::StageTypesDescription_), 22u);
        }
    });
}

TEST(Threads, ReadOneGroup)
{
    const FiltersGroup group = groupOf(1);
    const FiltersGroup same = groupOf(1);
    const std::string bytes = serialized(group);
    const std::string text = dump(group);
    const FiltersSerialized envelope(serialized(ruleOf(1, 3)));
    inThreads([&](int) {
        Dumps dumpOf;
        for (int round = 0; round < 10; ++round) {
            EXPECT_EQ(dumpOf(group), text);
            EXPECT_EQ(serialized(group), bytes);
            EXPECT_TRUE(group == same);
            EXPECT_TRUE(FiltersGroup(group) == same);
            EXPECT_EQ(group.getEntries().size(), 20u);
            EXPECT_EQ(bytesOf(written(group)), bytes);
            EXPECT_TRUE(FiltersGroup(bytes) == group);
            EXPECT_TRUE(FiltersEntry(envelope) == group.getEntriesRef().at(3));
            FiltersSerialized own;
            group.serialize(&own);
            EXPECT_EQ(own.size(), bytes.size() + 1);
            FiltersGroup mine(9);
            EXPECT_EQ(mine.insertEntry(group.getEntriesRef().at(3)), FILTERS_ERR_MATCH_NOT_ALLOWED);
        }
    });
}

TEST(Threads, ReadOneEntryAndItsObjects)
{
    const FiltersEntry entry = ruleOf(1, 3);
    const auto samples = matchSamples();
    inThreads([&](int) {
        Dumps dumpOf;
        for (int round = 0; round < 10; ++round) {
            MatchIngressPorts ports{std::list<limid_t>()};
            EXPECT_EQ(entry.getMatch(ports), FILTERS_OK);
            EXPECT_TRUE(*entry.getMatchesRef().find(MATCH_INGRESS_PORTS)->second == ports);
            FiltersEntry copy(9);
            EXPECT_EQ(copy.setMatchesFrom(entry), FILTERS_OK);
            EXPECT_EQ(copy.setActionsFrom(entry), FILTERS_OK);
            EXPECT_TRUE(entry.isL3CompatibleMatch(ports));
            for (const auto& sample : samples) {
                EXPECT_TRUE(*sample.copy() == *sample.object);
                EXPECT_FALSE(dumpOf(*sample.object).empty());
                EXPECT_TRUE(written(*sample.object).has_type_());
            }
        }
    });
}

} // namespace
