/**
 * How rule text writes and reads the values of members, by the notations of their rows.
 */
#ifndef FILTER_COMMON_SRC_RULE_VALUES_H
#define FILTER_COMMON_SRC_RULE_VALUES_H

#include "rule_addresses.h"
#include "rule_numbers.h"
#include "rule_words.h"
#include "wire/bytes.h"
#include "wire/rows.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <list>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace FiltersCommon {

// ---------------------------------------------------------------------------------------- writing

/** Writes values as their notations ask. */
class ValueWriter {
public:
    explicit ValueWriter(std::string& out) : out_(out) {}

    template <class T>
    void write(Notation notation, const T& value)
    {
        if constexpr (std::is_same_v<T, limid_t>)
            putHexadecimal(out_, packLimId(value), 8);
        else if constexpr (IS_ADDRESS<T>)
            writeAddress(notation, value);
        else
            writeNumber<T>(notation, toNumber(value));
    }

    void write(Notation, const std::list<limid_t>& ports)
    {
        for (const limid_t& port : ports) {
            putSeparator(out_);
            putHexadecimal(out_, packLimId(port), 8);
        }
    }

    void write(Notation, const std::list<port_type_t>& types)
    {
        for (const port_type_t type : types) {
            putSeparator(out_);
            out_ += "except:";
            putNumber(out_, toNumber(type));
        }
    }

    void write(Notation, const std::set<unsigned short>& ids)
    {
        for (auto id = ids.begin(); id != ids.end();) {
            const unsigned first = *id;
            unsigned last = first;
            while (++id != ids.end() && *id == last + 1)
                ++last;
            putSeparator(out_);
            putNumber(out_, first);
            if (last != first) {
                out_ += '-';
                putNumber(out_, last);
            }
        }
    }

private:
    template <class T>
    void writeNumber(Notation notation, std::uint32_t number)
    {
        switch (notation) {
        case Notation::TPID:
            out_ += "0x";
            putHexadecimal(out_, number, 4);
            break;
        case Notation::TRUTH:
            out_ += number != 0 ? "true" : "false";
            break;
        case Notation::PROTOCOL:
            putNamed(out_, PROTOCOL_WORDS, number);
            break;
        case Notation::COUNTED:
            out_ += ':';
            if (wordOf(COUNTER_TYPE_WORDS, number).empty())
                putNumber(out_, static_cast<std::int32_t>(number));
            else
                out_ += wordOf(COUNTER_TYPE_WORDS, number);
            break;
        case Notation::HEXADECIMAL_MASK:
            if (number != 0xFFFF) {
                out_ += "/0x";
                putHexadecimal(out_, number, 4);
            }
            break;
        default:
            putNumber(out_, number);
        }
    }

    template <class Address>
    void writeAddress(Notation notation, const Address& value)
    {
        if (notation != Notation::ADDRESS) {
            if (sameBytes(value, allOnes<Address>()))
                return;
            out_ += '/';
        }
        if (notation == Notation::LENGTH_OR_MASK)
            if (const auto length = lengthOf(value))
                return putNumber(out_, *length);
        AddressText<Address>::put(out_, value);
    }

    std::string& out_;
};

// ---------------------------------------------------------------------------------------- reading

/** Reads the values of one word, one after another, as their notations ask. */
class ValueReader {
public:
    explicit ValueReader(std::string_view text) : rest_(text) {}

    /** Does nothing once something was not as expected. */
    template <class T>
    void read(Notation notation, T& value)
    {
        isGood_ = isGood_ && readValue(notation, value);
    }

    /** Whether the whole text was read. */
    bool isDone() const { return isGood_ && rest_.empty(); }
    /** What was expected last. */
    std::string expected() const
    {
        return most_ == 0 ? expected_ : expected_ + std::to_string(most_);
    }

private:
    // Each of these says what it expects and returns whether it was there.

    template <class T>
    bool readValue(Notation notation, T& value)
    {
        if constexpr (IS_ADDRESS<T>)
            return notation == Notation::ADDRESS ? readAddress(value) : readMask(notation, value);
        else if constexpr (std::is_same_v<T, vlan_info_t>)
            return readValue(notation, value.svcVlanType);
        else if constexpr (std::is_enum_v<T>)
            return readCode(notation, value);
        else
            return readUnsigned(notation, value);
    }

    template <class Number>
    bool readUnsigned(Notation notation, Number& number)
    {
        constexpr Number MOST = std::numeric_limits<Number>::max();
        const bool hasNames = notation == Notation::PROTOCOL;
        if (notation == Notation::COUNTER)
            expect(EXPECTED_COUNTER);
        else
            expect(hasNames ? "the name of a protocol, such as tcp, or a number from 0 to "
                            : "a number from 0 to ",
                   MOST);
        if (notation == Notation::HEXADECIMAL_MASK) {
            expect("a port with a mask, such as 1024/0xfc00, both up to ", MOST);
            number = MOST;
            return rest_.empty() || (take(rest_, "/") && readNumber(takeAll(), number));
        }
        const std::string_view text = takeUntil(rest_, "/:");
        if (hasNames)
            if (const auto known = codeOf(PROTOCOL_WORDS, text)) {
                number = static_cast<Number>(*known);
                return true;
            }
        return readNumber(text, number);
    }

    bool readValue(Notation, bool& truth)
    {
        expect("true or false");
        const std::string_view text = takeAll();
        truth = text == "true";
        return truth || text == "false";
    }

    template <class Code>
    bool readCode(Notation notation, Code& code)
    {
        std::uint32_t number = 0;
        if (!readUnsigned(notation, number))
            return false;
        code = static_cast<Code>(number);
        return true;
    }

    bool readValue(Notation, counter_type_t& type)
    {
        expect(EXPECTED_COUNTER);
        if (!take(rest_, ":"))
            return false;
        std::string_view text = takeAll();
        if (const auto known = codeOf(COUNTER_TYPE_WORDS, text)) {
            type = static_cast<counter_type_t>(*known);
            return true;
        }
        const bool isNegative = take(text, "-");
        std::uint32_t number = 0;
        if (!readNumber(text, number, isNegative ? 0x80000000U : 0x7FFFFFFFU))
            return false;
        type = static_cast<counter_type_t>(isNegative ? 0 - number : number);
        return true;
    }

    template <class Address>
    bool readAddress(Address& address)
    {
        expect(AddressText<Address>::EXPECTED);
        return AddressText<Address>::read(takeUntil(rest_, "/"), address);
    }

    template <class Mask>
    bool readMask(Notation notation, Mask& mask)
    {
        mask = allOnes<Mask>();
        expect(AddressText<Mask>::EXPECTED_MASK);
        if (rest_.empty())
            return true;
        if (!take(rest_, "/"))
            return false;
        const std::string_view text = takeAll();
        std::uint32_t length = 0;
        if (notation == Notation::LENGTH_OR_MASK && readNumber(text, length, 8 * sizeof(Mask))) {
            mask = maskOf<Mask>(length);
            return true;
        }
        return AddressText<Mask>::read(text, mask);
    }

    bool readValue(Notation, limid_t& port)
    {
        expect("a port of eight hexadecimal digits");
        return readPort(takeAll(), port);
    }

    bool readValue(Notation, std::list<limid_t>& ports)
    {
        expect("ports of eight hexadecimal digits with commas between them");
        return readElements(
            "except:", [&](std::string_view text) { return readPort(text, ports.emplace_back()); });
    }

    bool readValue(Notation, std::list<port_type_t>& types)
    {
        expect("ports of eight hexadecimal digits, and behind them excluded types such as "
               "except:0, with commas between them");
        return readElements({}, [&](std::string_view text) {
            std::uint32_t type = 0;
            if (!take(text, "except:") || !readNumber(text, type))
                return false;
            types.push_back(static_cast<port_type_t>(type));
            return true;
        });
    }

    bool readValue(Notation, std::set<unsigned short>& ids)
    {
        expect("numbers from 0 to 65535 and ascending ranges of them, such as 20-29, with "
               "commas between them");
        // Ranges are joined before they are entered, as they may overlap any number of times.
        std::vector<std::pair<std::uint16_t, std::uint16_t>> ranges;
        const bool isGood = readElements({}, [&](std::string_view text) {
            std::pair<std::uint16_t, std::uint16_t> range;
            if (!readNumber(takeUntil(text, "-"), range.first))
                return false;
            range.second = range.first;
            if (take(text, "-") && !readNumber(text, range.second))
                return false;
            ranges.push_back(range);
            return range.first <= range.second;
        });
        std::sort(ranges.begin(), ranges.end());
        std::uint32_t next = 0;
        for (const auto& [first, last] : ranges)
            for (next = std::max<std::uint32_t>(next, first); next <= last; ++next)
                ids.insert(ids.end(), static_cast<unsigned short>(next));
        return isGood;
    }

    /** Reads the elements of a list up to one that begins with @p end, unless that is empty. */
    template <class Read>
    bool readElements(std::string_view end, Read read)
    {
        bool isExpected = false;
        while (!rest_.empty() && (end.empty() || rest_.substr(0, end.size()) != end)) {
            if (!read(takeUntil(rest_, ",")))
                return false;
            isExpected = take(rest_, ",");
        }
        return !isExpected || !rest_.empty();
    }

    static bool readPort(std::string_view text, limid_t& port)
    {
        std::uint64_t number = 0;
        if (text.size() != 8 || !readDigits(text, 16, 0xFFFFFFFF, number))
            return false;
        port = unpackLimId(static_cast<std::uint32_t>(number));
        return true;
    }

    /** @p most is the greatest number, which is put behind the text. */
    void expect(const char* what, std::uint32_t most = 0)
    {
        expected_ = what;
        most_ = most;
    }

    static constexpr char EXPECTED_COUNTER[] = "ID:TYPE, where ID is a number from 0 to 65535, and "
                                               "TYPE packets, octets, invalid or a number";

    std::string_view takeAll() { return takeUntil(rest_, {}); }

    std::string_view rest_;
    bool isGood_ = true;
    const char* expected_ = "nothing";
    std::uint32_t most_ = 0;
};

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_RULE_VALUES_H
