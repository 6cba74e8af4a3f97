#include "access_list.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

namespace filterctl {

using FiltersCommon::PortPair;

namespace {

// The search of the standard library for one of several characters calls a function for each byte.
bool isBlank(char c) { return c == ' ' || c == '\t'; }

/** Accepts only digits; a number that is too large for the type reads as the largest one. */
std::optional<unsigned> readNumber(std::string_view digits, int base)
{
    unsigned number = std::numeric_limits<unsigned>::max(); // kept if the number is too large
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number, base);
    if (error == std::errc::invalid_argument || stop != end)
        return std::nullopt;
    return number;
}

/** Refuses leading zeros, as other programs would read such an octet as octal. */
std::optional<unsigned> readOctet(std::string_view digits)
{
    const bool leadingZero = digits.size() > 1 && digits.front() == '0';
    const auto octet = readNumber(digits, 10);
    if (leadingZero || octet > 0xFFu)
        return std::nullopt;
    return octet;
}

std::optional<std::uint32_t> readAddress(std::string_view text)
{
    std::uint32_t address = 0;
    for (int index = 0; index < 4; ++index) {
        const std::size_t length = index < 3 ? text.find('.') : text.size();
        const auto octet = readOctet(text.substr(0, length));
        if (length == std::string_view::npos || !octet)
            return std::nullopt;
        address = address << 8 | *octet;
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return address;
}

/** The value of the word, or nothing. */
std::optional<AccessAction> actionOf(std::string_view word)
{
    if (word == "permit")
        return AccessAction::PERMIT;
    if (word == "deny")
        return AccessAction::DENY;
    return std::nullopt;
}

/** Whether the column is 0xDIGITS/0xDIGITS, of any length. */
bool isHexadecimalPair(std::string_view column)
{
    const auto isHexadecimal = [](std::string_view text) {
        return text.size() > 2 && text.substr(0, 2) == "0x" &&
               text.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string_view::npos;
    };
    const std::size_t slash = column.find('/');
    return slash != std::string_view::npos && isHexadecimal(column.substr(0, slash)) &&
           isHexadecimal(column.substr(slash + 1));
}

/** Reads one line from left to right and remembers where and why it stopped. */
class LineReader {
public:
    explicit LineReader(std::string_view line) : line_(line), rest_(line) {}

    bool read(AccessRule& rule)
    {
        return enter("source prefix") && take('@') && readPrefix(rule.source) &&
               enter("destination prefix") && readPrefix(rule.destination) &&
               enter("source port range") && readRange(rule.sourcePorts) &&
               enter("destination port range") && readRange(rule.destinationPorts) &&
               enter("protocol") && readProtocol(rule.protocol) && readRest(rule.action);
    }

    /** Where the wrong part begins, counted from 1. */
    std::size_t column() const { return begin_ + 1; }
    std::string reason() const { return std::string(field_) + ": " + reason_; }

private:
    bool refuse(std::string why)
    {
        reason_ = std::move(why);
        return false;
    }

    /** Goes on to what comes next, which is to blame for what is wrong from here. */
    void skipBlanks()
    {
        while (!rest_.empty() && isBlank(rest_.front()))
            rest_.remove_prefix(1);
        begin_ = line_.size() - rest_.size();
    }

    bool enter(std::string_view field)
    {
        field_ = field;
        skipBlanks();
        return !rest_.empty() || refuse("missing");
    }

    bool take(char wanted)
    {
        if (rest_.empty() || rest_.front() != wanted)
            return refuse(std::string("missing '") + wanted + "'");
        rest_.remove_prefix(1);
        return true;
    }

    /** What stands in front of the next blank, or of a colon if that ends it too. */
    std::string_view takeColumn(bool colonEnds = false)
    {
        std::size_t size = 0;
        while (size != rest_.size() && !isBlank(rest_[size]) && !(colonEnds && rest_[size] == ':'))
            ++size;
        const std::string_view taken = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return taken;
    }

    bool readPrefix(Prefix& prefix)
    {
        const std::string_view column = takeColumn();
        const std::size_t slash = column.find('/');
        const auto address = readAddress(column.substr(0, slash));
        if (!address)
            return refuse("not an address of four octets");
        if (slash == std::string_view::npos)
            return refuse("missing length");
        const auto length = readNumber(column.substr(slash + 1), 10);
        if (!length)
            return refuse("length is not a number");
        prefix = {*address, *length};
        return length <= 32u || refuse("length is over 32");
    }

    bool readPort(bool colonEnds, const char* name, std::uint16_t& port)
    {
        const auto number = readNumber(takeColumn(colonEnds), 10);
        if (!number)
            return refuse(std::string(name) + " is not a number");
        port = static_cast<std::uint16_t>(*number);
        return number <= 0xFFFFu || refuse(std::string(name) + " is over 65535");
    }

    bool readRange(PortRange& range)
    {
        if (!readPort(true, "low port", range.low))
            return false;
        skipBlanks();
        if (!take(':'))
            return false;
        skipBlanks();
        if (!readPort(false, "high port", range.high))
            return false;
        return range.low <= range.high || refuse("low port is above high port");
    }

    std::optional<unsigned> readHexadecimal(std::string_view digits, const char* name)
    {
        std::optional<unsigned> number;
        if (digits.substr(0, 2) == "0x")
            number = readNumber(digits.substr(2), 16);
        if (!number)
            refuse(std::string(name) + " is not 0x and hexadecimal digits");
        return number;
    }

    bool readProtocol(std::optional<std::uint8_t>& protocol)
    {
        const std::string_view column = takeColumn();
        const std::size_t slash = column.find('/');
        const auto value = readHexadecimal(column.substr(0, slash), "value");
        if (!value)
            return false;
        if (value > 0xFFu)
            return refuse("value is over 0xFF");
        if (slash == std::string_view::npos)
            return refuse("missing mask");
        const auto mask = readHexadecimal(column.substr(slash + 1), "mask");
        if (!mask)
            return false;
        if (mask == 0xFFu)
            protocol = static_cast<std::uint8_t>(*value);
        return mask == 0x00u || mask == 0xFFu || refuse("mask is neither 0x00 nor 0xFF");
    }

    /** What may stand behind the five columns. */
    bool readRest(std::optional<AccessAction>& action)
    {
        field_ = "further column";
        for (skipBlanks(); !rest_.empty(); skipBlanks()) {
            const std::string_view column = takeColumn();
            if (action)
                return refuse("nothing stands behind the action");
            action = actionOf(column);
            if (!action && !isHexadecimalPair(column))
                return refuse("neither permit nor deny nor a pair of hexadecimal numbers");
        }
        return true;
    }

    std::string_view line_;
    std::string_view rest_;
    std::size_t begin_ = 0;
    std::string_view field_;
    std::string reason_;
};

bool isSkipped(std::string_view line)
{
    return line.substr(0, 1) == "#" || std::all_of(line.begin(), line.end(), isBlank);
}

/** Removes the first line from @p text and returns it without its line end. */
std::string_view takeLine(std::string_view& text)
{
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

} // namespace

AccessList readAccessList(std::string_view text, std::vector<Problem>& problems)
{
    constexpr std::string_view MARK = "\xEF\xBB\xBF";
    if (text.substr(0, MARK.size()) == MARK)
        text.remove_prefix(MARK.size());
    AccessList rules;
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::string_view line = takeLine(text);
        if (isSkipped(line))
            continue;
        AccessRule rule;
        rule.line = number;
        LineReader reader(line);
        if (reader.read(rule))
            rules.push_back(rule);
        else
            problems.push_back({number, reader.column(), reader.reason()});
    }
    return rules;
}

std::vector<PortPair> coverPortRange(const PortRange& range)
{
    std::vector<PortPair> pairs;
    FiltersCommon::coverPorts(range.low, range.high, [&](PortPair pair) { pairs.push_back(pair); });
    return pairs;
}

} // namespace filterctl
