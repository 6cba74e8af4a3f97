#include "operations.h"

#include "filters.h"
#include "peers.h"

#include <sstream>

namespace bench {

namespace {

constexpr Descriptions (*SUBJECTS[])() = {
    filtersOperations, filtersEntryOperations, messagesOperations,
    structOperations,  streamOperations,
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
    require(bytesOf(group) == messageBytesOf(rules), "the bytes of the messages");
    std::ostringstream text;
    text << group;
    require(text.str() == streamedTextOf(rules), "the text through a stream");
#ifdef HAVE_LIBNFTNL
    require(nftnlRulesReadBack(rules) == rules.size(), "the rules that libnftnl reads back");
#endif
}

} // namespace bench
