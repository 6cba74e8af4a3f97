#include "group_json.h"
#include "properties.h"
#include "target.h"

#include <algorithm>
#include <optional>
#include <string>

// The first byte decides what the rest is: the bytes of a group, which is written as JSON and read
// back, or a text, which is read.

namespace FiltersCommon::fuzz {
namespace {

void checkBackAgain(const FiltersGroup& group)
{
    for (const bool compact : {false, true}) {
        filterctl::Problem why;
        const auto read = filterctl::groupFromJson(filterctl::jsonOf(group, compact), why);
        require(read.has_value(), "what was written is read");
        requireSame(*read, group, "what was written is read as an equal group");
    }
}

void checkText(const std::string& text)
{
    filterctl::Problem why;
    const auto group = filterctl::groupFromJson(text, why);
    if (group) {
        require(why.sentence.empty(), "there is a group, or something is wrong");
        checkInvariants(*group);
        checkBackAgain(*group);
        return;
    }
    require(!why.sentence.empty(), "there is a group, or something is wrong");
    const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
    require(why.line >= 1 && why.line <= static_cast<std::size_t>(lines), "a problem names a line");
    require(why.column >= 1 && why.column <= text.size() + 1, "a problem names a column");
}

} // namespace
} // namespace FiltersCommon::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace FiltersCommon;
    return fuzz::takeBytesOrText(
        data, size, [](const std::string& bytes) { fuzz::checkBackAgain(FiltersGroup(bytes)); },
        fuzz::checkText);
}
