#include "text.h"

#include <arpa/inet.h>
#include <netinet/ether.h>

#include <cstring>

namespace FiltersCommon {

const char* findValueName(port_type_t type) { return type == PORT_TYPE_CPU ? "CPU_PORT" : nullptr; }

const char* findValueName(cp2cpuCancelParam_t type)
{
    switch (type) {
    case COPY_TO_CPU_CANCEL:
        return "COPY_TO_CPU_CANCEL";
    case SWITCH_TO_CPU_CANCEL:
        return "SWITCH_TO_CPU_CANCEL";
    }
    return nullptr;
}

const char* findValueName(counter_type_t type)
{
    switch (type) {
    case COUNTER_TYPE_INVALID:
        return "Invalid";
    case COUNTER_TYPE_PACKETS:
        return "Packets";
    case COUNTER_TYPE_OCTETS:
        return "Octets";
    }
    return nullptr;
}

const char* textOf(const ether_addr& address, TextRoom& room)
{
    std::strcpy(room.data(), "00:00:00:00:00:00");
    return ether_ntoa_r(&address, room.data());
}

const char* textOf(const in_addr& address, TextRoom& room)
{
    return inet_ntop(AF_INET, &address, room.data(), INET_ADDRSTRLEN);
}

const char* textOf(const in6_addr& address, TextRoom& room)
{
    return inet_ntop(AF_INET6, &address, room.data(), INET6_ADDRSTRLEN);
}

const char* textOf(limid_t limId, TextRoom& room)
{
    room.front() = '\0';
    limid_to_intfname(limId, room.data(), room.size());
    return room.data();
}

void writeText(std::ostream& out, const char* text)
{
    if (text == nullptr)
        out.setstate(std::ios_base::failbit);
    else
        out << text;
}

void writePorts(std::ostream& out, const char* label, const std::list<limid_t>& ports)
{
    out << "      Number of ports: " << ports.size() << std::endl;
    out << label;
    for (const limid_t& port : ports) {
        out << "\"";
        writeTextOf(out, port);
        out << "\" ";
    }
    out << std::endl;
}

void writeHead(std::ostream& out, Head head, std::string_view title, const char* typeLabel,
               int type)
{
    if (head == Head::UNFLUSHED)
        out << title;
    else
        out << title.substr(0, title.size() - 1) << std::endl;
    out << typeLabel << type;
    if (head == Head::UNFLUSHED || head == Head::UNFLUSHED_TYPE)
        out << "\n";
    else
        out << std::endl;
    if (head == Head::NO_PARAMETERS)
        out << "      <no parameters>" << std::endl;
}

} // namespace FiltersCommon
