#include "floors.h"

#include <filter_types.h>

#include <charconv>
#include <cstring>
#include <sstream>

namespace bench {

using namespace FiltersCommon;

namespace {

class ToStream {
public:
    void write(const char* text) { out_ << text; }
    void write(std::uint32_t number) { out_ << number; }
    std::string take() const { return out_.str(); }

private:
    std::ostringstream out_;
};

class ToString {
public:
    void write(const char* text) { out_ += text; }
    void write(std::uint32_t number)
    {
        char digits[10];
        const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
        out_.append(digits, end);
    }
    std::string take() { return std::move(out_); }

private:
    std::string out_;
};

template <class Out>
void writeLine(Out& out, const char* label, std::uint32_t number)
{
    out.write(label);
    out.write(number);
    out.write("\n");
}

template <class Out>
void writeAddress(Out& out, const char* label, std::uint32_t address)
{
    unsigned char octets[4];
    std::memcpy(octets, &address, sizeof octets);
    out.write(label);
    for (int i = 0; i < 4; ++i) {
        if (i > 0)
            out.write(".");
        out.write(std::uint32_t{octets[i]});
    }
    out.write("\n");
}

const char* titleOf(int kind)
{
    switch (kind) {
    case MATCH_SRC_IPV4:
        return "    =MatchSrcIPv4=\n";
    case MATCH_DST_IPV4:
        return "    =MatchDstIPv4=\n";
    case MATCH_SRC_L4_PORT:
        return "    =MatchSrcL4Port=\n";
    case MATCH_DST_L4_PORT:
        return "    =MatchDstL4Port=\n";
    case MATCH_IP_PROTOCOL:
        return "    =MatchIpProtocol=\n";
    }
    return "    =MatchAll=\n";
}

template <class Out>
void writeMatch(Out& out, const Object& object)
{
    out.write(titleOf(object.kind));
    writeLine(out, "      Match Type ID: ", static_cast<std::uint32_t>(object.kind));
    switch (object.kind) {
    case MATCH_SRC_IPV4:
    case MATCH_DST_IPV4:
        writeAddress(out, "      IP: ", object.value);
        writeAddress(out, "      Mask: ", object.mask);
        break;
    case MATCH_SRC_L4_PORT:
    case MATCH_DST_L4_PORT:
        writeLine(out, "      Port: ", object.value);
        writeLine(out, "      Mask: ", object.mask);
        break;
    case MATCH_IP_PROTOCOL:
        writeLine(out, "      Ip Protocol: ", object.value);
        break;
    default:
        out.write("      <no parameters>\n");
    }
}

template <class Out>
std::string dump(const Entries& entries)
{
    Out out;
    out.write("=FiltersGroup=\n");
    writeLine(out, "  ID: ", 1);
    writeLine(out, "  Priority: ", 0);
    writeLine(out, "  Stage: ", GROUP_STAGE_0);
    writeLine(out, "  Type: ", GROUP_TYPE_3);
    for (const auto& [id, entry] : entries) {
        out.write("  =FiltersEntry=\n");
        writeLine(out, "    ID: ", id);
        writeLine(out, "    Priority: ", entry.priority);
        for (const auto& element : entry.matches)
            writeMatch(out, *element.second);
        for (const auto& element : entry.actions) {
            const int kind = element.second->kind;
            out.write(kind == ACTION_DENY ? "    =ActionDeny=\n" : "    =ActionPermit=\n");
            writeLine(out, "      Action Type ID: ", static_cast<std::uint32_t>(kind));
            out.write("      <no parameters>\n");
        }
    }
    return out.take();
}

} // namespace

std::string dumpThroughStream(const Entries& entries) { return dump<ToStream>(entries); }

std::string dumpAppended(const Entries& entries) { return dump<ToString>(entries); }

} // namespace bench
