/**
 * Pieces of text dumps. Numbers are written with the stream's formatting.
 *
 * std::endl and "\n" are not interchangeable here: which lines flush the stream is part of the
 * format that readers of dumps see. Nor can one string be split in two, as the stream's width
 * applies only to the first.
 */
#ifndef FILTER_COMMON_SRC_TEXT_H
#define FILTER_COMMON_SRC_TEXT_H

#include "filter_actions.h"
#include "filter_matches.h"

#include <array>
#include <list>
#include <ostream>
#include <set>
#include <string_view>
#include <type_traits>

namespace FiltersCommon {

// ------------------------------------------------------------------------------ titles, type lines

/** The title of an object's dump, with the end of its line. */
template <class T>
inline constexpr std::string_view TITLE;

#define FILTERS_COMMON_DEFINE_TITLE(kind, Class, Values)                                           \
    template <>                                                                                    \
    inline constexpr std::string_view TITLE<Class> = "    =" #Class "=\n";
FILTERS_COMMON_EACH_MATCH_KIND(FILTERS_COMMON_DEFINE_TITLE)
FILTERS_COMMON_DEFINE_TITLE(MATCH_TOS, MatchDSCP, MatchToS)
FILTERS_COMMON_EACH_ACTION_KIND(FILTERS_COMMON_DEFINE_TITLE)
#undef FILTERS_COMMON_DEFINE_TITLE

/** The lines before the values. Some kinds deliberately do not flush all of them. */
enum class Head {
    FLUSHED,
    UNFLUSHED,
    UNFLUSHED_TYPE, ///< the title is flushed, the type is not
    NO_PARAMETERS,  ///< flushed, followed by a line that says so
};

// ---------------------------------------------------------------------------------------- values

/** An 8-bit value or an enumerator as a number rather than a character or a word. */
template <class T>
auto number(T value)
{
    if constexpr (std::is_enum_v<T>)
        return static_cast<std::underlying_type_t<T>>(value);
    else if constexpr (sizeof(T) == 1 && !std::is_same_v<T, bool>)
        return static_cast<unsigned>(value);
    else
        return value;
}
inline auto number(vlan_info_t value) { return value.svcVlanType; }

/** The name of a value in dumps, or null. */
const char* findValueName(port_type_t type);
const char* findValueName(cp2cpuCancelParam_t type);
const char* findValueName(counter_type_t type);

/** Room for the text of an address or for the name of an interface. */
using TextRoom = std::array<char, 100>;

/** The address as the C library writes it, in @p room; null if that yields no text. */
const char* textOf(const ether_addr& address, TextRoom& room);
const char* textOf(const in_addr& address, TextRoom& room);
const char* textOf(const in6_addr& address, TextRoom& room);
/** The name of the interface; never null. */
const char* textOf(limid_t limId, TextRoom& room);

/** Writes @p text, or sets failbit if it is null. */
void writeText(std::ostream& out, const char* text);

template <class T>
void writeTextOf(std::ostream& out, const T& value)
{
    TextRoom room;
    writeText(out, textOf(value, room));
}

/** Writes a line with the number of ports and a line with their names. */
void writePorts(std::ostream& out, const char* label, const std::list<limid_t>& ports);

/** Writes @p label and @p value as one line that flushes the stream. */
template <class T>
void writeLine(std::ostream& out, const char* label, const T& value)
{
    out << label << number(value) << std::endl;
}

// ------------------------------------------------------------------------------------- formatters
//
// Each writes the label and the value of one member of the object being dumped.

struct Formatter {
    /** Whether the member is described for this object. */
    template <class T>
    constexpr bool shows(const T&) const
    {
        return true;
    }
};

inline constexpr struct Line : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        writeLine(out, label, value);
    }
} LINE;

inline constexpr struct UnflushedLine : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        out << label << number(value) << "\n";
    }
} UNFLUSHED_LINE;

/** The stream deliberately stays hexadecimal: readers of dumps rely on it for what follows. */
inline constexpr struct HexadecimalEverAfter : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        out << label << std::hex << value << std::endl;
    }
} HEXADECIMAL_EVER_AFTER;

/** The name of the value, or nothing if it has none. */
inline constexpr struct NamedLine : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        const char* name = findValueName(value);
        out << label << (name == nullptr ? "" : name) << std::endl;
    }
} NAMED_LINE;

/** The name of the value or "Unknown", without a newline. */
inline constexpr struct NamedOrUnknown : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        const char* name = findValueName(value);
        out << label << (name == nullptr ? "Unknown" : name);
    }
} NAMED_OR_UNKNOWN;

/** Restores the stream's width after the line, so that it applies to what follows too. */
inline constexpr struct LineThatKeepsTheWidth : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        const std::streamsize width = out.width();
        out << label << number(value) << "\n";
        out.width(width);
    }
} LINE_THAT_KEEPS_THE_WIDTH;

/** An address, or the name of an interface. */
inline constexpr struct TextLine : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        out << label;
        writeTextOf(out, value);
        out << std::endl;
    }
} TEXT_LINE;

inline constexpr struct UnflushedTextLine : Formatter {
    template <class V, class T>
    void operator()(std::ostream& out, const char* label, const V& value, const T&) const
    {
        out << label;
        writeTextOf(out, value);
        out << "\n";
    }
} UNFLUSHED_TEXT_LINE;

/** The label opens the bracket. */
inline constexpr struct BracketedLine : Formatter {
    template <class T>
    void operator()(std::ostream& out, const char* label, const std::set<unsigned short>& values,
                    const T&) const
    {
        out << label;
        for (const unsigned short value : values)
            out << value << " ";
        out << "]" << std::endl;
    }
} BRACKETED_LINE;

/** A line with the number of ports before the line with the label. */
inline constexpr struct NumberedPorts : Formatter {
    template <class T>
    void operator()(std::ostream& out, const char* label, const std::list<limid_t>& ports,
                    const T&) const
    {
        writePorts(out, label, ports);
    }
} NUMBERED_PORTS;

/** The same for a match, which dumps no ports if it has excluded port types. */
inline constexpr struct NumberedPortsUnlessExcluded : Formatter {
    static bool shows(const MatchPorts& match)
    {
        return match.getExcludedPortTypesRef().empty() || !match.getPortsRef().empty();
    }

    void operator()(std::ostream& out, const char* label, const std::list<limid_t>& ports,
                    const MatchPorts& match) const
    {
        if (match.getExcludedPortTypesRef().empty())
            writePorts(out, label, ports);
    }
} NUMBERED_PORTS_UNLESS_EXCLUDED;

inline constexpr struct ExcludedPortTypes : Formatter {
    static bool shows(const MatchPorts& match) { return !match.getExcludedPortTypesRef().empty(); }

    void operator()(std::ostream& out, const char* label, const std::list<port_type_t>& types,
                    const MatchPorts& match) const
    {
        if (!shows(match))
            return;
        out << label;
        for (const port_type_t type : types) {
            const char* name = findValueName(type);
            out << "\"" << (name == nullptr ? "" : name) << "\" ";
        }
        out << std::endl;
    }
} EXCLUDED_PORT_TYPES;

inline constexpr struct NumberedPortsAndEmptyLine : Formatter {
    template <class T>
    void operator()(std::ostream& out, const char* label, const std::list<limid_t>& ports,
                    const T&) const
    {
        writePorts(out, label, ports);
        out << std::endl;
    }
} NUMBERED_PORTS_AND_EMPTY_LINE;

inline constexpr struct PortsWithoutLabel : Formatter {
    template <class T>
    void operator()(std::ostream& out, const char*, const std::list<limid_t>& ports, const T&) const
    {
        for (const limid_t& port : ports) {
            out << "      \"";
            writeTextOf(out, port);
            out << "\" ";
        }
        out << std::endl;
    }
} PORTS_WITHOUT_LABEL;

// ---------------------------------------------------------------------------------- whole objects

/** Writes the title, a TITLE, the type and whatever else comes before the values. */
void writeHead(std::ostream& out, Head head, std::string_view title, const char* typeLabel,
               int type);

/**
 * Dumps @p object as a T. @p values is the object as a T, or null to omit the values, which
 * @p rows describe.
 */
template <class T, class Base, class Rows>
std::ostream& writeObject(std::ostream& out, const char* typeLabel, const Base& object,
                          const T* values, const Rows& rows)
{
    writeHead(out, rows.head(), TITLE<T>, typeLabel, static_cast<int>(object.getType()));
    if (values != nullptr)
        rows.dump(out, *values);
    return out;
}

} // namespace FiltersCommon

#endif // FILTER_COMMON_SRC_TEXT_H
