#include "text.h"

#include <netinet/ether.h>

namespace FiltersCommon {

void writeConverted(std::ostream& out, const char* text)
{
    if (text == nullptr)
        out.setstate(std::ios_base::failbit);
    else
        out << text;
}

void writeMac(std::ostream& out, const ether_addr& mac)
{
    char text[] = "00:00:00:00:00:00";
    writeConverted(out, ether_ntoa_r(&mac, text));
}

void writeIntfName(std::ostream& out, limid_t limId)
{
    char name[100] = "";
    limid_to_intfname(limId, name, sizeof name);
    out << name;
}

void writePorts(std::ostream& out, const std::list<limid_t>& ports)
{
    out << "      Number of ports: " << ports.size() << std::endl;
    out << "      LIMIDs: ";
    for (const limid_t& port : ports) {
        out << "\"";
        writeIntfName(out, port);
        out << "\" ";
    }
    out << std::endl;
}

} // namespace FiltersCommon
