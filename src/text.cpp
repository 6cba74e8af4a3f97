#include "text.h"

#include <arpa/inet.h>
#include <netinet/ether.h>

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

namespace {

/** Writes @p text, or sets failbit where a conversion yielded none. */
void writeConverted(std::ostream& out, const char* text)
{
    if (text == nullptr)
        out.setstate(std::ios_base::failbit);
    else
        out << text;
}

} // namespace

void writeAddress(std::ostream& out, const ether_addr& address)
{
    char text[] = "00:00:00:00:00:00";
    writeConverted(out, ether_ntoa_r(&address, text));
}

void writeAddress(std::ostream& out, const in_addr& address)
{
    char text[INET_ADDRSTRLEN];
    writeConverted(out, inet_ntop(AF_INET, &address, text, sizeof text));
}

void writeAddress(std::ostream& out, const in6_addr& address)
{
    char text[INET6_ADDRSTRLEN];
    writeConverted(out, inet_ntop(AF_INET6, &address, text, sizeof text));
}

void writeIntfName(std::ostream& out, limid_t limId)
{
    char name[100] = "";
    limid_to_intfname(limId, name, sizeof name);
    out << name;
}

void writePorts(std::ostream& out, const char* label, const std::list<limid_t>& ports)
{
    out << "      Number of ports: " << ports.size() << std::endl;
    out << label;
    for (const limid_t& port : ports) {
        out << "\"";
        writeIntfName(out, port);
        out << "\" ";
    }
    out << std::endl;
}

} // namespace FiltersCommon
