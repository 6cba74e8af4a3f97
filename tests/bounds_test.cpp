/**
 * Time and memory of every operation grow no faster than what it works on, up to the largest groups
 * and lists. The work is counted: in allocations, in bytes, and where nothing is allocated in
 * characters and in names of interfaces.
 */
#include "named_entries.h"
#include "nowhere.h"
#include "wire_support.h"
#include "work.h"

#include "filter_groups_c.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

/** How many interfaces have been named. */
std::size_t namesOfInterfaces = 0;

} // namespace

// In the place of the neighbouring library's, so that the calls are counted.
extern "C" int limid_to_intfname(limid_t, char* name, std::size_t size)
{
    ++namesOfInterfaces;
    std::snprintf(name, size, "port");
    return 0;
}

namespace {

using namespace FiltersCommon;
using namespace FiltersCommon::test;

template <class T>
std::size_t lengthOfDump(const T& object)
{
    using ::operator<<;
    Nowhere nowhere;
    std::ostream out(&nowhere);
    out << object;
    return nowhere.length();
}

using Operation = std::function<void()>;

/** An operation on an object of a given size. */
template <class T>
struct Use {
    const char* name;
    Operation (*prepare)(std::shared_ptr<T> object);
};

/** What can be done with an entry as well as with a group. */
template <class T>
std::vector<Use<T>> commonUses()
{
    using Object = std::shared_ptr<T>;
    return {
        {"copy", [](Object object) -> Operation { return [object] { T copy(*object); }; }},
        {"compare",
         [](Object object) -> Operation {
             return
                 [object, same = std::make_shared<T>(*object)] { EXPECT_TRUE(*object == *same); };
         }},
        {"write",
         [](Object object) -> Operation {
             return [object] {
                 std::string bytes;
                 object->serialize(&bytes);
             };
         }},
        {"write into an envelope",
         [](Object object) -> Operation {
             return [object] {
                 FiltersSerialized envelope;
                 object->serialize(&envelope);
             };
         }},
        {"read",
         [](Object object) -> Operation {
             return [bytes = serialized(*object)] { T read(bytes); };
         }},
        {"write a message",
         [](Object object) -> Operation { return [object] { written(*object); }; }},
        {"dump", [](Object object) -> Operation { return [object] { lengthOfDump(*object); }; }},
    };
}

/** Holds each use of an object of @p size against those of smaller ones. */
template <class T, class Make>
void expectProportionalUses(const std::vector<Use<T>>& uses, std::size_t size, Make make)
{
    std::map<std::size_t, std::shared_ptr<T>> objects;
    for (const std::size_t smaller : {size / 4, size / 2, size})
        objects[smaller] = std::make_shared<T>(make(smaller));
    for (const Use<T>& use : uses) {
        SCOPED_TRACE(use.name);
        const Work work = expectProportional(
            size / 4, [&](std::size_t smaller) { return use.prepare(objects.at(smaller)); });
        printWork(use.name, work, size);
    }
    EXPECT_TRUE(*objects.at(size) == make(size)) << "no use changes the object";
}

// ----------------------------------------------------------------------------------------- groups

constexpr std::size_t ALL_IDS = 65536;

FiltersEntry rule(std::size_t number)
{
    FiltersEntry entry(static_cast<filtersEntryId_t>(number));
    entry.setPolicer(policerOf(policer::STAGE_INGRESS, policer::Mode::SR_TCM));
    entry.setMatch(MatchSrcIPv4({static_cast<in_addr_t>(number)}));
    entry.setMatch(MatchDstL4Port(443));
    entry.setMatch(MatchIngressPorts({limId(0, 0, 0, 1)}));
    entry.setAction(ActionRedirect(limId(0, 0, 0, 2)));
    return entry;
}

FiltersGroup groupOf(std::size_t size)
{
    FiltersGroup group(1);
    group.setStage(GROUP_STAGE_2);
    group.setType(GROUP_TYPE_3);
    for (std::size_t number = 0; number < size; ++number)
        EXPECT_EQ(group.insertEntry(rule(number)), FILTERS_OK);
    return group;
}

TEST(Bounds, OfAGroupUpToTheLargest)
{
    using Object = std::shared_ptr<FiltersGroup>;
    std::vector<Use<FiltersGroup>> uses = commonUses<FiltersGroup>();
    uses.push_back({"build", [](Object object) -> Operation {
                        return [size = object->getEntriesRef().size()] { groupOf(size); };
                    }});
    uses.push_back({"replace every entry", [](Object object) -> Operation {
                        return [object] {
                            const std::size_t size = object->getEntriesRef().size();
                            for (std::size_t number = size; number-- != 0;)
                                object->insertEntry(rule(number));
                            EXPECT_EQ(object->getEntriesRef().size(), size);
                        };
                    }});
    uses.push_back({"list for C", [](Object object) -> Operation {
                        return [object] {
                            entriesStruct listing;
                            filtersGroupGetEntries(object.get(), &listing);
                            deleteFiltersEntriesStruct(&listing);
                        };
                    }});
    expectProportionalUses(uses, ALL_IDS, groupOf);
}

TEST(Bounds, OfTheDumpOfAGroupAreThoseOfItsEntries)
{
    const std::size_t ofNone = lengthOfDump(groupOf(0));
    const std::size_t ofOne = lengthOfDump(rule(1000)) + 1000;
    for (const std::size_t size : {1000u, 4000u}) {
        namesOfInterfaces = 0;
        EXPECT_LE(lengthOfDump(groupOf(size)), ofNone + size * ofOne);
        EXPECT_EQ(namesOfInterfaces, 2 * size);
    }
}

// ------------------------------------------------------------------------------------------ lists

constexpr std::size_t MILLION = 1000000;

std::list<limid_t> portsOf(std::size_t size)
{
    std::list<limid_t> ports;
    for (std::size_t number = 0; number < size; ++number)
        ports.push_back(limId(0, static_cast<int>(number >> 16 & 0xFF),
                              static_cast<int>(number >> 8 & 0xFF),
                              static_cast<int>(number & 0xFF)));
    return ports;
}

FiltersEntry entryWithPorts(std::size_t size)
{
    FiltersEntry entry(1);
    entry.setMatch(MatchIngressPorts(portsOf(size)));
    return entry;
}

FiltersEntry entryWithVlans(std::size_t size)
{
    std::set<unsigned short> ids;
    for (std::size_t number = 0; number < size; ++number)
        ids.insert(static_cast<unsigned short>(number));
    FiltersEntry entry(1);
    entry.setMatch(MatchExternalVlanId(ids));
    return entry;
}

FiltersEntry entryWithBlockedPorts(std::size_t size)
{
    FiltersEntry entry(1);
    entry.setAction(ActionBlockEgressPorts(portsOf(size)));
    return entry;
}

TEST(Bounds, OfAnEntryWithAMillionPorts)
{
    using Object = std::shared_ptr<FiltersEntry>;
    std::vector<Use<FiltersEntry>> uses = commonUses<FiltersEntry>();
    uses.push_back({"set", [](Object object) -> Operation {
                        MatchIngressPorts match{std::list<limid_t>()};
                        EXPECT_EQ(object->getMatch(match), FILTERS_OK);
                        return [object, match] { object->setMatch(match); };
                    }});
    uses.push_back({"get", [](Object object) -> Operation {
                        return [object] {
                            MatchIngressPorts match{std::list<limid_t>()};
                            EXPECT_EQ(object->getMatch(match), FILTERS_OK);
                        };
                    }});
    uses.push_back({"insert into a group", [](Object object) -> Operation {
                        return [object] {
                            FiltersGroup group(1);
                            group.setType(GROUP_TYPE_3);
                            EXPECT_EQ(group.insertEntry(*object), FILTERS_OK);
                        };
                    }});
    expectProportionalUses(uses, MILLION, entryWithPorts);
}

TEST(Bounds, OfOtherListsOfAnEntry)
{
    expectProportionalUses(commonUses<FiltersEntry>(), MILLION / 4, entryWithBlockedPorts);
    expectProportionalUses(commonUses<FiltersEntry>(), ALL_IDS, entryWithVlans);
}

TEST(Bounds, OfTheDumpOfAListAreThoseOfItsPorts)
{
    for (const std::size_t size : {std::size_t{1000}, MILLION}) {
        namesOfInterfaces = 0;
        const std::size_t length = lengthOfDump(entryWithPorts(size));
        EXPECT_EQ(namesOfInterfaces, size);
        EXPECT_LE(length, 1000 + size * std::string("\"port\" ").size());
    }
}

} // namespace
