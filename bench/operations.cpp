#include "operations.h"

#include "filters.h"
#include "floors.h"
#include "messages.h"
#ifdef HAVE_LIBNFTNL
#include "nftnl.h"
#endif

#include <sstream>

namespace bench {

namespace {

constexpr Descriptions (*SUBJECTS[])() = {
    filtersOperations, filtersEntryOperations, messagesOperations, floorsOperations,
#ifdef HAVE_LIBNFTNL
    nftnlOperations,
#endif
};

} // namespace

Descriptions allOperations()
{
    Descriptions all;
    for (const auto operations : SUBJECTS) {
        const Descriptions more = operations();
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

Allocations allocationsOf(const Operation& operation)
{
    operation.prepare();
    startCounting();
    operation.run();
    const Allocations allocations = stopCounting();
    operation.clear();
    return allocations;
}

namespace {

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::logic_error(std::string("not comparable: ") + what);
}

} // namespace

void checkThatSubjectsAgree(const Rules& rules)
{
    const FiltersCommon::FiltersGroup group = groupOf(rules);
    require(group.getEntriesRef().size() == rules.size(), "the library refused rules");
    const std::string bytes = bytesOf(group);
    require(bytes == messageBytesOf(rules), "the bytes of the messages");

    const Entries entries = floorOf(rules);
    require(bytes == encode(entries), "the bytes encoded by hand");
    require(bytes == encode(decode(bytes)), "the bytes decoded by hand");
    std::ostringstream text;
    text << group;
    require(text.str() == dumpThroughStream(entries), "the text through a stream");
    require(text.str() == dumpAppended(entries), "the text appended");
#ifdef HAVE_LIBNFTNL
    require(nftnlRulesReadBack(rules) == rules.size(), "the rules that libnftnl reads back");
#endif
}

} // namespace bench
