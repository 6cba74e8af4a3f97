#include "filter_rule_text.h"

#include "kind_map.h"
#include "policers.h"
#include "rule_policers.h"
#include "rule_rows.h"
#include "rule_values.h"
#include "rule_words.h"

namespace FiltersCommon {

namespace {

/** The values of an object's rows, one after another. */
template <class Rows, class T>
void putValues(std::string& out, const Rows& rows, const T& object)
{
    ValueWriter writer(out);
    rows.each([&](const auto& row) { writer.write(row.notation, row.get(object)); });
}

/** A word for the object: that of its kind, and its values if the kind has any. */
template <class Base>
void putObject(std::string& out, const Base& object)
{
    out += ' ';
    out += wordOf(object.getType());
    KindsOf<Base>::visit(object.getType(), [&](auto kind) {
        using Class = ClassOf<decltype(kind)>;
        if constexpr (!hasNoValues<Class>) {
            out += '=';
            putValues(out, rowsOfValues<Class>(), static_cast<const Class&>(object));
        }
    });
}

template <class Base>
void putObjects(std::string& out, const KindMap<Base>& map)
{
    for (const Base& object : Objects(map))
        putObject(out, object);
}

void putEntry(std::string& out, const FiltersEntry& entry)
{
    putNumber(out, entry.getId());
    if (entry.getPriority() != 0) {
        ((out += ' ') += PRIORITY) += '=';
        putNumber(out, entry.getPriority());
    }
    putObjects(out, entry.getMatchesRef());
    (out += ' ') += THEN;
    putObjects(out, entry.getActionsRef());
    if (entry.getCounter() != Counter()) {
        ((out += ' ') += COUNTER) += '=';
        putValues(out, CounterRows::of(&entry.getCounter()), entry.getCounter());
    }
    if (!samePolicer(entry.getPolicer(), NoPolicer::get().policer)) {
        ((out += ' ') += POLICER) += '=';
        putPolicer(out, entry.getPolicer());
    }
}

} // namespace

std::string toRuleText(const FiltersEntry& entry)
{
    std::string text;
    putEntry(text, entry);
    return text;
}

std::string toRuleText(const FiltersGroup& group)
{
    std::string text;
    ValueWriter writer(text);
    eachOfHeader([&](const auto& row) {
        text += text.empty() ? "" : " ";
        text += row.word;
        text += row.word == GROUP ? ' ' : '=';
        writer.write(row.notation, row.get(group));
    });
    text += '\n';
    for (const auto& [id, entry] : group.getEntriesRef()) {
        putEntry(text, entry);
        text += '\n';
    }
    return text;
}

} // namespace FiltersCommon
