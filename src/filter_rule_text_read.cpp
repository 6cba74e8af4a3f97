#include "filter_refusals.h"
#include "filter_rule_text.h"

#include "port_pairs.h"
#include "rule_line.h"
#include "rule_policers.h"
#include "rule_rows.h"
#include "rule_text_errors.h"
#include "rule_values.h"
#include "rule_words.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

namespace {

// ------------------------------------------------------------------------------------------ draft

/** The pairs of a range of ports; none if no range is given. */
class PortPairs {
public:
    void cover(std::uint16_t low, std::uint16_t high)
    {
        coverPorts(low, high, [&](PortPair pair) { pairs_[size_++] = pair; });
    }

    bool empty() const { return size_ == 0; }
    /** How many entries they make of one. */
    std::uint32_t count() const { return std::max<std::uint32_t>(size_, 1); }
    const PortPair* begin() const { return pairs_.data(); }
    const PortPair* end() const { return pairs_.data() + size_; }

private:
    std::array<PortPair, 30> pairs_;
    std::uint32_t size_ = 0;
};

/** What a line has said of its entry so far. */
struct Draft {
    FiltersEntry entry;
    PortPairs sourcePorts;
    PortPairs destinationPorts;

    template <class Class>
    PortPairs& portsOf()
    {
        return Class::KIND == MATCH_SRC_L4_PORT ? sourcePorts : destinationPorts;
    }

    CodeSet<filtersMatch_t> matches;
    CodeSet<filtersAction_t> actions;
    bool hasId = false;
    Word id; /**< where it is taken, for what is said of it: if it is left out, the first word */
    bool isIdKnown = true;
    bool hasPriority = false;
    bool hasThen = false;
    bool hasCounter = false;
    bool hasPolicer = false;
};

// ----------------------------------------------------------------------------------------- reader

class RuleTextReader {
public:
    RuleTextReader(std::string_view text, std::vector<RuleTextError>* errors)
        : rest_(text), errors_(errors, text.size())
    {}

    std::optional<FiltersGroup> read()
    {
        take(rest_, "\xEF\xBB\xBF");
        while (!rest_.empty() && (errors_.count() == 0 || errors_.areAskedFor())) {
            std::string_view line = takeUntil(rest_, "\n");
            take(rest_, "\n");
            if (!line.empty() && line.back() == '\r')
                line.remove_suffix(1);
            ++line_;
            readLine(Words(line));
        }
        errors_.finish();
        if (errors_.count() != 0)
            return std::nullopt;
        return std::move(group_);
    }

private:
    void readLine(Words words)
    {
        const Word first = words.next();
        if (first.text.empty())
            return;
        if (first.name() == GROUP)
            readHeader(first, words);
        else
            readEntry(first, words);
        isFirst_ = false;
    }

    // ------------------------------------------------------------------------------------- header

    void readHeader(const Word& first, Words& words)
    {
        if (!isFirst_)
            addToHeader(first, "the header stands in front of all entries, and only once");
        const Word id = words.next();
        if (first.hasValue())
            add(first, "the header begins with 'group NUMBER'");
        else
            readHeaderValue({GROUP, id.text.empty() ? first.column : id.column}, id.text);
        CodeSet<std::uint32_t> given; // by the numbers of the fields
        for (Word word = words.next(); !word.text.empty(); word = words.next()) {
            Nearest nearest(word.name());
            bool isKnown = false;
            eachOfHeader([&](const auto& row) {
                if (row.word == GROUP)
                    return;
                nearest.ask(row.word);
                if (word.name() != row.word)
                    return;
                isKnown = true;
                if (give(given, row.NUMBER, word))
                    readHeaderValue(word, word.value());
                else
                    isPlaceKnown_ = false;
            });
            if (!isKnown)
                addToHeader(word, "a header has no " + quoted(word.name()) + nearest.hint());
        }
    }

    void readHeaderValue(const Word& word, std::string_view text)
    {
        ValueReader reader(text);
        eachOfHeader([&](const auto& row) {
            if (row.word != word.name())
                return;
            typename std::decay_t<decltype(row)>::Value value{};
            reader.read(row.notation, value);
            if (reader.isDone())
                row.commit(group_, value);
            else
                addUnexpected(word, row.word, reader.expected(), text);
            if (row.word != GROUP && row.word != PRIORITY)
                isPlaceKnown_ = isPlaceKnown_ && reader.isDone();
        });
    }

    /** Adds an error after which nobody can tell the stage and the type of the group. */
    void addToHeader(const Word& word, std::string sentence)
    {
        add(word, std::move(sentence));
        isPlaceKnown_ = false;
    }

    // -------------------------------------------------------------------------------------- entry

    void readEntry(const Word& first, Words& words)
    {
        Draft draft;
        draft.id = first;
        draft.entry.setId(static_cast<filtersEntryId_t>(nextId_));
        for (Word word = first; !word.text.empty(); word = words.next())
            if (word.name() == THEN)
                readThen(draft, word);
            else if (draft.hasThen)
                readBehindThen(draft, word);
            else
                readInFrontOfThen(draft, word);
        if (!draft.hasThen)
            add(first, "'then' is missing, which stands in front of the actions, even of none");
        insert(draft, first);
    }

    void readThen(Draft& draft, const Word& word)
    {
        give(draft.hasThen, word);
        if (word.hasValue())
            add(word, quoted(THEN) + " takes no value");
    }

    void readInFrontOfThen(Draft& draft, const Word& word)
    {
        const std::string_view name = word.name();
        if (!name.empty() && name.front() >= '0' && name.front() <= '9') {
            if (std::exchange(draft.hasId, true))
                add(word, "the identifier is given twice");
            else
                readId(draft, word);
        } else if (name == PRIORITY) {
            if (give(draft.hasPriority, word))
                readPriority(draft, word);
        } else if (const auto kind = matchOf(name)) {
            if (give(draft.matches, *kind, word))
                readMatch(draft, *kind, word);
        } else if (kindOf<filtersAction_t>(ACTION_WORDS, name) || name == COUNTER ||
                   name == POLICER) {
            add(word, quoted(name) + " stands behind 'then'");
        } else if (name == GROUP) {
            add(word, quoted(name) + " stands at the beginning of the header");
        } else {
            addUnknown<filtersMatch_t>(word, "match");
        }
    }

    void readBehindThen(Draft& draft, const Word& word)
    {
        const std::string_view name = word.name();
        if (name == COUNTER) {
            if (give(draft.hasCounter, word))
                readCounter(draft, word);
        } else if (name == POLICER) {
            if (give(draft.hasPolicer, word))
                readPolicerWord(draft, word);
        } else if (const auto kind = kindOf<filtersAction_t>(ACTION_WORDS, name)) {
            if (give(draft.actions, *kind, word))
                readAction(draft, *kind, word);
        } else if (matchOf(name) || name == PRIORITY) {
            add(word, quoted(name) + " stands in front of 'then'");
        } else {
            addUnknown<filtersAction_t>(word, "action");
        }
    }

    static std::optional<filtersMatch_t> matchOf(std::string_view name)
    {
        return name == DSCP ? MATCH_TOS : kindOf<filtersMatch_t>(MATCH_WORDS, name);
    }

    // -------------------------------------------------------------------------- words of an entry

    void readId(Draft& draft, const Word& word)
    {
        draft.id = word;
        const std::size_t before = errors_.count();
        filtersEntryId_t id = 0;
        if (readNumber(word.text, id))
            draft.entry.setId(id);
        else
            addUnexpected(word, "an entry's identifier", "a number from 0 to 65535", word.text);
        draft.isIdKnown = errors_.count() == before;
    }

    void readPriority(Draft& draft, const Word& word)
    {
        filtersEntryPriority_t priority = 0;
        if (readNumber(word.value(), priority))
            draft.entry.setPriority(priority);
        else
            addUnexpected(word, PRIORITY, "a number from 0 to 4294967295", word.value());
    }

    void readCounter(Draft& draft, const Word& word)
    {
        Counter counter;
        readValues(word, CounterRows::of(&counter), counter);
        EntryRows::setCounter(draft.entry, counter);
    }

    void readPolicerWord(Draft& draft, const Word& word)
    {
        std::string expected = "a list of NAME:VALUE";
        const auto policer = word.hasValue() ? readPolicer(word.value(), expected) : std::nullopt;
        if (policer)
            draft.entry.setPolicer(*policer);
        else
            addUnexpected(word, POLICER, expected, word.value());
    }

    // Matches and actions with wrong values are set all the same: whether an entry may hold them
    // depends on their kinds alone.

    void readMatch(Draft& draft, filtersMatch_t kind, const Word& word)
    {
        for (FiltersRefusal refusal : l3Refusals(draft.entry, kind)) {
            refusal.entry.reset(); // the identifier may stand behind the match
            add(word, refusal.sentence());
        }
        if (word.name() == DSCP)
            return readDSCP(draft, word);
        MatchKinds::visit(kind, [&](auto known) {
            ClassOf<decltype(known)> match;
            if (!readPortRange(draft, match, word))
                readObject(word, match);
            draft.entry.setMatch(match);
        });
    }

    void readDSCP(Draft& draft, const Word& word)
    {
        unsigned char dscp = 0;
        if (!readNumber(word.value(), dscp, 63))
            addUnexpected(word, DSCP, "a number from 0 to 63", word.value());
        draft.entry.setMatch(MatchToS(MatchDSCP(dscp)));
    }

    /** Returns whether the match is one of ports and the value a range, right or wrong. */
    template <class Class>
    bool readPortRange([[maybe_unused]] Draft& draft, const Class&,
                       [[maybe_unused]] const Word& word)
    {
        if constexpr (std::is_base_of_v<MatchL4Port, Class>) {
            std::string_view text = word.value();
            if (text.find('-') == text.npos)
                return false;
            std::uint16_t low = 0;
            std::uint16_t high = 0;
            if (readNumber(takeUntil(text, "-"), low) && take(text, "-") &&
                readNumber(text, high) && low <= high)
                draft.template portsOf<Class>().cover(low, high);
            else
                addUnexpected(word, word.name(), "two numbers from 0 to 65535, the lower first",
                              word.value());
            return true;
        } else {
            return false;
        }
    }

    void readAction(Draft& draft, filtersAction_t kind, const Word& word)
    {
        ActionKinds::visit(kind, [&](auto known) {
            ClassOf<decltype(known)> action;
            readObject(word, action);
            draft.entry.setAction(action);
        });
    }

    template <class Class>
    void readObject(const Word& word, Class& object)
    {
        if constexpr (!hasNoValues<Class>)
            readValues(word, rowsOfValues<Class>(), object);
        else if (word.hasValue())
            add(word, quoted(word.name()) + " takes no value");
    }

    template <class Rows, class T>
    void readValues(const Word& word, const Rows& rows, T& object)
    {
        ValueReader reader(word.value());
        rows.each([&](const auto& row) {
            typename std::decay_t<decltype(row)>::Value value{};
            reader.read(row.notation, value);
            row.commit(object, value);
        });
        if (!word.hasValue() || !reader.isDone())
            addUnexpected(word, word.name(), reader.expected(), word.value());
    }

    // -------------------------------------------------------------------------------- whole entry

    /** Inserts the entries of a line, one for each pair of ports, unless anything is wrong. */
    void insert(Draft& draft, const Word& first)
    {
        std::uint32_t id = draft.hasId ? draft.entry.getId() : nextId_;
        if (draft.isIdKnown)
            takeIds(id, draft.sourcePorts.count() * draft.destinationPorts.count(), draft.id);
        if (isPlaceKnown_)
            for (FiltersRefusal refusal : insertEntryRefusals(group_, draft.entry)) {
                if (!draft.isIdKnown || id == ids_.size())
                    refusal.entry.reset();
                add(first, refusal.sentence());
            }
        if (errors_.count() != 0)
            return;
        eachOf(draft, [&](FiltersEntry& entry) {
            entry.setId(static_cast<filtersEntryId_t>(id++));
            group_.takeEntry(std::move(entry));
        });
    }

    void takeIds(std::uint32_t begin, std::uint32_t count, const Word& word)
    {
        const auto left = static_cast<std::uint32_t>(ids_.size()) - begin;
        nextId_ = begin + std::min(count, left);
        std::uint32_t taken = nextId_;
        for (std::uint32_t id = nextId_; id-- != begin;) {
            if (ids_[id])
                taken = id;
            ids_[id] = true;
        }
        if (taken != nextId_)
            add(word, "identifier " + std::to_string(taken) +
                          " is taken by an entry in front of this one");
        if (count > left)
            add(word, "no identifier is left for this entry; the greatest is 65535");
    }

    /** Calls @p use with each entry of the line; source pairs come first. */
    template <class Use>
    static void eachOf(Draft& draft, Use use)
    {
        if (draft.sourcePorts.empty() && draft.destinationPorts.empty())
            return use(draft.entry);
        eachPair<MatchSrcL4Port>(draft.entry, draft.sourcePorts, [&](FiltersEntry& outer) {
            eachPair<MatchDstL4Port>(outer, draft.destinationPorts, [&](FiltersEntry& inner) {
                FiltersEntry entry(inner);
                use(entry);
            });
        });
    }

    /** Calls @p use with the entry as it is, or once with each pair set. */
    template <class MatchPort, class Use>
    static void eachPair(FiltersEntry& entry, const PortPairs& ports, Use use)
    {
        if (ports.empty())
            return use(entry);
        for (const PortPair& pair : ports) {
            entry.setMatch(MatchPort(pair.value, pair.mask));
            use(entry);
        }
    }

    // ------------------------------------------------------------------------------------- errors

    void add(const Word& word, std::string sentence)
    {
        errors_.add(line_, word.column, std::move(sentence));
    }

    /** Asks for all words, as one on the other side of 'then' may be meant. */
    template <class Code>
    void addUnknown(const Word& word, const char* what)
    {
        if (errors_.areOnlyCounted())
            return add(word, {});
        Nearest nearest(word.name());
        const auto askFor = [&](const auto& kinds) {
            for (const KindWord& known : kinds)
                nearest.ask(known.text());
        };
        if constexpr (std::is_same_v<Code, filtersMatch_t>) {
            askFor(MATCH_WORDS);
            askFor(ACTION_WORDS);
        } else {
            askFor(ACTION_WORDS);
            askFor(MATCH_WORDS);
        }
        for (const std::string_view known : {THEN, PRIORITY, COUNTER, POLICER, DSCP, GROUP})
            nearest.ask(known);
        add(word, "there is no " + (what + (" " + quoted(word.name()))) + nearest.hint());
    }

    void addUnexpected(const Word& word, std::string_view name, std::string_view expected,
                       std::string_view text)
    {
        add(word, std::string(name) + " takes " + std::string(expected) + ", not " + quoted(text));
    }

    /** Notes that a word is given; if it was given before, adds an error and returns false. */
    bool give(bool& isGiven, const Word& word)
    {
        if (isGiven)
            add(word, quoted(word.name()) + " is given twice");
        return !std::exchange(isGiven, true);
    }

    template <class Code>
    bool give(CodeSet<Code>& given, Code code, const Word& word)
    {
        bool isGiven = given.contains(code);
        given.insert(code);
        return give(isGiven, word);
    }

    std::string_view rest_;
    RuleTextErrors errors_;
    std::size_t line_ = 0;
    FiltersGroup group_{0};
    bool isFirst_ = true;
    bool isPlaceKnown_ = true; // the stage and the type, which say what is admitted
    std::uint32_t nextId_ = 0;
    std::bitset<0x10000> ids_;
};

} // namespace

std::optional<FiltersGroup> groupFromRuleText(std::string_view text,
                                              std::vector<RuleTextError>* errors)
{
    return RuleTextReader(text, errors).read();
}

} // namespace FiltersCommon
