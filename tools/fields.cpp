#include "fields.h"

#include <filter_names.h>

#include <algorithm>
#include <sstream>
#include <string_view>

namespace filterctl {

using namespace FiltersCommon;

namespace {

constexpr char BLANK = ' ';

/** The words of a line, with one blank between them. */
std::string words(std::string_view line)
{
    std::string text;
    while (!line.empty()) {
        line.remove_prefix(std::min(line.find_first_not_of(BLANK), line.size()));
        const std::string_view word = line.substr(0, line.find_first_of(BLANK));
        line.remove_prefix(word.size());
        if (!word.empty())
            (text += text.empty() ? "" : " ") += word;
    }
    return text;
}

void addLine(Fields& fields, const std::string& line)
{
    if (line.empty() || line == "<no parameters>")
        return;
    if (line.front() == '"') { // names of ports without a label
        fields.push_back({"LIMIDs", line});
        return;
    }
    if (line.front() == '+') { // an element of a list, which the label above it belongs to
        std::string& list = fields.back().value;
        list += (list.empty() ? "" : ", ") + words(line.substr(1));
        return;
    }
    const std::size_t colon = line.find(':');
    fields.push_back({line.substr(0, colon), words(line.substr(colon + 1))});
}

/** The lines of a dump behind those that every object has. */
template <class T>
Fields readDump(const T& object, int linesOfEvery)
{
    using ::operator<<;
    std::ostringstream dump; // one for each object: a dump may leave the stream hexadecimal
    dump << object;
    std::istringstream lines(dump.str());
    Fields fields;
    int number = 0;
    for (std::string line; std::getline(lines, line); ++number)
        if (number >= linesOfEvery)
            addLine(fields, words(line));
    return fields;
}

/** A name of filter_names.h, unless it says that there is none. */
std::string nameOrNumber(const char* name, std::int32_t code)
{
    return name == std::string_view("unknown") ? std::to_string(code) : name;
}

} // namespace

Fields fieldsOf(const Match& match) { return readDump(match, 2); }

Fields fieldsOf(const Action& action) { return readDump(action, 2); }

Fields fieldsOf(const Counter& counter) { return readDump(counter, 0); }

Fields fieldsOf(const policer::Policer& policer)
{
    // Policers are dumped by the entries that hold them.
    FiltersEntry entry;
    entry.setPolicer(policer);
    return readDump(entry, 4);
}

std::string textOf(const Fields& fields)
{
    std::string text;
    for (const Field& field : fields) {
        text += (text.empty() ? "" : ", ") + field.label + ":";
        text += (field.value.empty() ? "" : " ") + field.value;
    }
    return text;
}

std::string nameOf(filtersGroupStage_t stage)
{
    return nameOrNumber(filtersGroupStageName(stage), stage);
}

std::string nameOf(filtersGroupType_t type)
{
    return nameOrNumber(filtersGroupTypeName(type), type);
}

} // namespace filterctl
