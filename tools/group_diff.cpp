#include "group_diff.h"

#include "description_text.h"
#include "progress.h"
#include "wire_text.h"

#include <filter_names.h>

#include <cstddef>
#include <map>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace filterctl {

using namespace FiltersCommon;

namespace {

// ------------------------------------------------------------------------------ what is compared

/** Two entries that differ, or a single one; the missing one is null. */
struct Pair {
    const FiltersEntry* a;
    const FiltersEntry* b;
};

/** Iterates over two maps in ascending key order; a value that only one has is paired with null. */
template <class Map, class Function>
void walkBoth(const Map& a, const Map& b, Function&& function)
{
    auto left = a.begin();
    auto right = b.begin();
    while (left != a.end() || right != b.end()) {
        const bool takesLeft =
            right == b.end() || (left != a.end() && !(right->first < left->first));
        const bool takesRight =
            left == a.end() || (right != b.end() && !(left->first < right->first));
        const auto key = takesLeft ? left->first : right->first;
        function(key, takesLeft ? &left->second : nullptr, takesRight ? &right->second : nullptr);
        if (takesLeft)
            ++left;
        if (takesRight)
            ++right;
    }
}

std::vector<Pair> compareByIdentifier(const FiltersGroup& a, const FiltersGroup& b)
{
    std::vector<Pair> pairs;
    walkBoth(a.getEntriesRef(), b.getEntriesRef(),
             [&](filtersEntryId_t, const FiltersEntry* left, const FiltersEntry* right) {
                 if (left == nullptr || right == nullptr || !(*left == *right))
                     pairs.push_back({left, right});
             });
    return pairs;
}

/** A key that is the same for entries that match and do the same. */
std::string contentOf(const FiltersEntry& entry)
{
    FiltersEntry content(entry);
    content.setId(0);
    content.setPriority(0);
    std::string bytes;
    content.serialize(&bytes);
    return bytes;
}

std::vector<Pair> compareByContent(const FiltersGroup& a, const FiltersGroup& b)
{
    std::unordered_map<std::string, std::size_t> unmatched;
    std::vector<std::size_t*> counts; // for each entry of a
    for (const auto& [id, entry] : a.getEntriesRef()) {
        counts.push_back(&unmatched[contentOf(entry)]);
        ++*counts.back();
    }
    std::map<filtersEntryId_t, const FiltersEntry*> onlyA;
    std::map<filtersEntryId_t, const FiltersEntry*> onlyB;
    for (const auto& [id, entry] : b.getEntriesRef()) {
        const auto found = unmatched.find(contentOf(entry));
        if (found == unmatched.end() || found->second == 0)
            onlyB.emplace(id, &entry);
        else
            --found->second;
    }
    // Among entries with the same content, the last ones count as surplus.
    auto count = counts.rbegin();
    for (auto it = a.getEntriesRef().rbegin(); it != a.getEntriesRef().rend(); ++it, ++count)
        if (**count > 0) {
            --**count;
            onlyA.emplace(it->first, &it->second);
        }

    std::vector<Pair> pairs;
    walkBoth(onlyA, onlyB, [&](filtersEntryId_t, const auto* left, const auto* right) {
        if (left != nullptr)
            pairs.push_back({*left, nullptr});
        if (right != nullptr)
            pairs.push_back({nullptr, *right});
    });
    return pairs;
}

// ------------------------------------------------------------------------------------------ texts

template <class T>
std::string shown(const T& object)
{
    return textOf(describe(object));
}

/** Differs for any two different objects; descriptions may not, as names are not unique. */
template <class T>
std::string shownExactly(const T& object)
{
    if constexpr (std::is_same_v<T, Counter>)
        return shown(object);
    else
        return wireTextOf(object);
}

bool same(const Match& a, const Match& b) { return a == b; }
bool same(const Action& a, const Action& b) { return a == b; }
bool same(const Counter& a, const Counter& b) { return a == b; }
bool same(const policer::Policer& a, const policer::Policer& b)
{
    return a.Serialize() == b.Serialize();
}

/** The policer or counter, or null if it is that of an entry without one. */
template <class T>
const T* unlessNone(const T& value)
{
    static const T none;
    return same(value, none) ? nullptr : &value;
}

class DiffText {
public:
    DiffText(const NamedGroup& a, const NamedGroup& b, const Painter& painter)
        : a_(a.name), b_(b.name), painter_(painter)
    {
        text_ = painter.bold("--- " + a_) + "\n" + painter.bold("+++ " + b_) + "\n";
    }

    /** @return whether the groups differ in anything but their entries */
    bool addGroups(const FiltersGroup& a, const FiltersGroup& b)
    {
        const std::size_t before = text_.size();
        addChange("id", std::to_string(a.getId()), std::to_string(b.getId()));
        addChange("priority", std::to_string(a.getPriority()), std::to_string(b.getPriority()));
        addChange("stage", nameOf(a.getStage()), nameOf(b.getStage()));
        addChange("type", nameOf(a.getType()), nameOf(b.getType()));
        const bool differ = text_.size() > before;
        if (differ)
            text_.insert(before, "  group\n");
        return differ;
    }

    void add(const Pair& pair)
    {
        if (pair.a != nullptr && pair.b != nullptr)
            addDiffering(*pair.a, *pair.b);
        else if (pair.a != nullptr)
            addOnly('-', *pair.a, a_);
        else
            addOnly('+', *pair.b, b_);
    }

    const std::string& text() const { return text_; }

private:
    void addLine(char sign, const std::string& line)
    {
        const std::string whole = sign + line;
        text_ += sign == '-' ? painter_.red(whole) : painter_.green(whole);
        text_ += '\n';
    }

    void addValue(char sign, const char* name, const std::string& value)
    {
        addLine(sign, std::string("   ") + name + (value.empty() ? "" : " ") + value);
    }

    void addChange(const char* name, const std::string& a, const std::string& b)
    {
        if (a == b)
            return;
        addValue('-', name, a);
        addValue('+', name, b);
    }

    /** Adds how two values, either of which may be null, differ. */
    template <class T>
    void addChange(const char* name, const T* a, const T* b)
    {
        if (a == nullptr || b == nullptr) {
            if (const T* value = a != nullptr ? a : b)
                addValue(a != nullptr ? '-' : '+', name, shown(*value));
        } else if (!same(*a, *b)) {
            const auto text = shown(*a) != shown(*b) ? shown<T> : shownExactly<T>;
            addValue('-', name, text(*a));
            addValue('+', name, text(*b));
        }
    }

    template <class Map, class Name>
    void addChanges(const Map& a, const Map& b, Name&& nameOfKind)
    {
        walkBoth(a, b, [&](auto kind, const auto* left, const auto* right) {
            addChange(nameOfKind(kind), left == nullptr ? nullptr : *left,
                      right == nullptr ? nullptr : *right);
        });
    }

    void addContents(const FiltersEntry& a, const FiltersEntry& b)
    {
        addChange("policer", unlessNone(a.getPolicer()), unlessNone(b.getPolicer()));
        addChange("counter", unlessNone(a.getCounter()), unlessNone(b.getCounter()));
        addChanges(a.getMatchesRef(), b.getMatchesRef(), filtersMatchName);
        addChanges(a.getActionsRef(), b.getActionsRef(), filtersActionName);
    }

    void addDiffering(const FiltersEntry& a, const FiltersEntry& b)
    {
        text_ += "  entry " + std::to_string(a.getId()) + " differs\n";
        addChange("priority", std::to_string(a.getPriority()), std::to_string(b.getPriority()));
        addContents(a, b);
    }

    void addOnly(char sign, const FiltersEntry& entry, const std::string& name)
    {
        addLine(sign, " entry " + std::to_string(entry.getId()) + " only in " + name);
        addValue(sign, "priority", std::to_string(entry.getPriority()));
        const FiltersEntry none;
        if (sign == '-')
            addContents(entry, none);
        else
            addContents(none, entry);
    }

    const std::string& a_;
    const std::string& b_;
    const Painter painter_;
    std::string text_;
};

/** The last line, with the counts. */
std::string summarize(const NamedGroup& a, const NamedGroup& b, bool groupsDiffer,
                      const std::vector<Pair>& pairs)
{
    std::size_t differing = 0;
    std::size_t onlyA = 0;
    for (const Pair& pair : pairs) {
        differing += pair.a != nullptr && pair.b != nullptr;
        onlyA += pair.b == nullptr;
    }
    const std::size_t onlyB = pairs.size() - differing - onlyA;
    const std::size_t same = a.group.getEntriesRef().size() - differing - onlyA;
    return (groupsDiffer ? "group differs; entries: " : "entries: ") + std::to_string(same) +
           " the same, " + std::to_string(differing) + " differing, " + std::to_string(onlyA) +
           " only in " + a.name + ", " + std::to_string(onlyB) + " only in " + b.name + "\n";
}

} // namespace

std::string diffGroups(const NamedGroup& a, const NamedGroup& b, const DiffOptions& options)
{
    DiffText text(a, b, options.painter);
    const bool groupsDiffer = text.addGroups(a.group, b.group);
    const std::vector<Pair> pairs = options.byContent ? compareByContent(a.group, b.group)
                                                      : compareByIdentifier(a.group, b.group);
    if (pairs.empty() && !groupsDiffer)
        return "";
    const std::string summary = summarize(a, b, groupsDiffer, pairs);
    if (options.brief)
        return summary;
    Stage stage("comparing", pairs.size());
    for (std::size_t index = 0; index < pairs.size(); ++index) {
        stage.reach(index);
        text.add(pairs[index]);
    }
    return text.text() + summary;
}

} // namespace filterctl
