#include "filter_refusals.h"
#include "filter_rule_text.h"

#include "port_pairs.h"
#include "rule_policers.h"
#include "rule_rows.h"
#include "rule_text_errors.h"
#include "rule_values.h"
#include "rule_words.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

namespace FiltersCommon {

namespace {

// ------------------------------------------------------------------------------------------ words

struct Word {
    std::string_view text;
    std::size_t column;

    std::string_view name() const { return text.substr(0, text.find('=')); }
    bool hasValue() const { return text.find('=') != text.npos; }
    std::string_view value() const { return hasValue() ? text.substr(text.find('=') + 1) : ""; }
};

/** The words of a line, one after another, without its comment. */
class Words {
public:
    explicit Words(std::string_view line) : line_(line) {}

    /** A word without text is the end of the line. */
    Word next()
    {
        place_ = std::min(line_.find_first_not_of(BLANKS, place_), line_.size());
        const std::size_t begin = place_;
        if (begin == line_.size() || line_[begin] == '#')
            return {{}, begin + 1};
        place_ = std::min(line_.find_first_of(BLANKS, begin), line_.size());
        return {line_.substr(begin, place_ - begin), begin + 1};
    }

private:
    static constexpr std::string_view BLANKS = " \t";

    std::string_view line_;
    std::size_t place_ = 0;
};

/** The pairs of a range of ports; none if no range is given. */
struct PortPairs {
    std::array<PortPair, 30> pairs;
    std::size_t size = 0;

    bool empty() const { return size == 0; }
    const PortPair* begin() const { return pairs.data(); }
    const PortPair* end() const { return pairs.data() + size; }
};

/** What a line has said of its entry so far. */
struct Draft {
    FiltersEntry entry;
    PortPairs sourcePorts;
    PortPairs destinationPorts;

    CodeSet<filtersMatch_t> matches;
    CodeSet<filtersAction_t> actions;
    bool hasId = false;
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
        const std::size_t before = errors_.count();
        if (!isFirst_)
            add(first, "the header stands in front of all entries, and only once");
        const Word id = words.next();
        if (first.hasValue())
            add(first, "the header begins with 'group NUMBER'");
        else
            readHeaderValue({GROUP, id.column}, id.text);
        CodeSet<std::uint32_t> given; // by the numbers of the fields
        for (Word word = words.next(); !word.text.empty(); word = words.next()) {
            Nearest nearest(word.name());
            bool isKnown = false;
            eachOfHeader([&](const auto& row) {
                nearest.ask(row.word);
                if (word.name() != row.word || row.word == GROUP)
                    return;
                isKnown = true;
                if (give(given, row.NUMBER, word))
                    readHeaderValue(word, word.value());
            });
            if (!isKnown)
                add(word, "a header has no " + quoted(word.name()) + nearest.question());
        }
        isHeaderGood_ = isHeaderGood_ && errors_.count() == before;
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
        });
    }

    // -------------------------------------------------------------------------------------- entry

    void readEntry(const Word& first, Words& words)
    {
        const std::size_t before = errors_.count();
        Draft draft;
        draft.entry.setId(static_cast<filtersEntryId_t>(nextId_));
        for (Word word = first; !word.text.empty(); word = words.next())
            if (word.text == THEN)
                give(draft.hasThen, word);
            else if (draft.hasThen)
                readBehindThen(draft, word);
            else
                readInFrontOfThen(draft, word);
        if (!draft.hasThen)
            add(first, "'then' is missing, which stands in front of the actions, even of none");
        insert(draft, first, errors_.count() == before);
    }

    void readInFrontOfThen(Draft& draft, const Word& word)
    {
        const std::string_view name = word.name();
        if (!name.empty() && name.front() >= '0' && name.front() <= '9') {
            if (give(draft.hasId, word))
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
        } else {
            Nearest nearest(name);
            for (const KindWord& known : MATCH_WORDS)
                nearest.ask(known.text());
            for (const std::string_view known : {DSCP, PRIORITY, THEN, GROUP})
                nearest.ask(known);
            add(word, "there is no match " + quoted(name) + nearest.question());
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
            Nearest nearest(name);
            for (const KindWord& known : ACTION_WORDS)
                nearest.ask(known.text());
            for (const std::string_view known : {COUNTER, POLICER})
                nearest.ask(known);
            add(word, "there is no action " + quoted(name) + nearest.question());
        }
    }

    static std::optional<filtersMatch_t> matchOf(std::string_view name)
    {
        return name == DSCP ? MATCH_TOS : kindOf<filtersMatch_t>(MATCH_WORDS, name);
    }

    // -------------------------------------------------------------------------- words of an entry

    void readId(Draft& draft, const Word& word)
    {
        filtersEntryId_t id = 0;
        if (readNumber(word.text, id))
            draft.entry.setId(id);
        else
            addUnexpected(word, "an entry's identifier", "a number from 0 to 65535", word.text);
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
        if (readValues(word, CounterRows::of(&counter), counter))
            EntryRows::setCounter(draft.entry, counter);
    }

    void readPolicerWord(Draft& draft, const Word& word)
    {
        std::string expected;
        if (const auto policer = readPolicer(word.value(), expected))
            draft.entry.setPolicer(*policer);
        else
            addUnexpected(word, POLICER, expected, word.value());
    }

    void readMatch(Draft& draft, filtersMatch_t kind, const Word& word)
    {
        for (const FiltersRefusal& refusal : l3Refusals(draft.entry, kind))
            return add(word, refusal.sentence());
        if (word.name() == DSCP)
            return readDSCP(draft, word);
        MatchKinds::visit(kind, [&](auto known) {
            using Class = ClassOf<decltype(known)>;
            if constexpr (std::is_base_of_v<MatchL4Port, Class>)
                if (word.value().find('-') != std::string_view::npos)
                    return readPortRange(draft, kind, word);
            Class match;
            if (readObject(word, match))
                draft.entry.setMatch(match);
        });
    }

    void readDSCP(Draft& draft, const Word& word)
    {
        unsigned char dscp = 0;
        if (readNumber(word.value(), dscp, 63))
            draft.entry.setMatch(MatchToS(MatchDSCP(dscp)));
        else
            addUnexpected(word, DSCP, "a number from 0 to 63", word.value());
    }

    void readPortRange(Draft& draft, filtersMatch_t kind, const Word& word)
    {
        std::string_view text = word.value();
        std::uint16_t low = 0;
        std::uint16_t high = 0;
        const bool isGood = readNumber(takeUntil(text, "-"), low) && take(text, "-") &&
                            readNumber(text, high) && low <= high;
        if (!isGood)
            return addUnexpected(word, word.name(), "two numbers from 0 to 65535, the lower first",
                                 word.value());
        PortPairs& ports = kind == MATCH_SRC_L4_PORT ? draft.sourcePorts : draft.destinationPorts;
        coverPorts(low, high, [&](PortPair pair) { ports.pairs[ports.size++] = pair; });
    }

    void readAction(Draft& draft, filtersAction_t kind, const Word& word)
    {
        ActionKinds::visit(kind, [&](auto known) {
            ClassOf<decltype(known)> action;
            if (readObject(word, action))
                draft.entry.setAction(action);
        });
    }

    template <class Class>
    bool readObject(const Word& word, Class& object)
    {
        if constexpr (!hasNoValues<Class>)
            return readValues(word, rowsOfValues<Class>(), object);
        if (word.hasValue())
            add(word, quoted(word.name()) + " takes no value");
        return !word.hasValue();
    }

    template <class Rows, class T>
    bool readValues(const Word& word, const Rows& rows, T& object)
    {
        ValueReader reader(word.value());
        rows.each([&](const auto& row) {
            typename std::decay_t<decltype(row)>::Value value{};
            reader.read(row.notation, value);
            row.commit(object, value);
        });
        if (word.hasValue() && reader.isDone())
            return true;
        addUnexpected(word, word.name(), reader.expected(), word.value());
        return false;
    }

    // -------------------------------------------------------------------------------- whole entry

    /** Inserts the entries of a line, one for each pair of ports, if nothing in it is wrong. */
    void insert(Draft& draft, const Word& first, bool isGood)
    {
        std::uint32_t id = draft.hasId ? draft.entry.getId() : nextId_;
        const std::size_t before = errors_.count();
        eachOf(draft, [&](FiltersEntry& entry) {
            nextId_ = id + 1;
            if (errors_.count() != before)
                return;
            if (id >= ids_.size())
                return add(first, "no identifier is left for this entry; the greatest is 65535");
            if (ids_[id])
                return add(first, "identifier " + std::to_string(id) +
                                      " is taken by an entry in front of this one");
            ids_[id] = true;
            entry.setId(static_cast<filtersEntryId_t>(id));
            ++id;
            if (!isGood || !isHeaderGood_)
                return;
            for (const FiltersRefusal& refusal : insertEntryRefusals(group_, entry))
                add(first, refusal.sentence());
            if (errors_.count() == before)
                group_.takeEntry(std::move(entry));
        });
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
    bool isHeaderGood_ = true;
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
