#include "limidmgr_decode.h"

#include <stdio.h>

/* Octet 0 is the kind of interface, octet 1 the unit, octets 2 and 3 the number, most significant
 * first. */
enum interface_kind { KIND_ETHERNET = 0, KIND_LAG = 1, KIND_VLAN = 2, KIND_CPU = 3 };

int limid_to_intfname(limid_t limid, char* name, size_t size)
{
    const unsigned unit = limid.octet[1];
    const unsigned number = (unsigned)limid.octet[2] << 8 | limid.octet[3];
    int length;

    switch (limid.octet[0]) {
    case KIND_ETHERNET:
        length = snprintf(name, size, "eth%u/%u", unit, number);
        break;
    case KIND_LAG:
        length = snprintf(name, size, "lag%u", number);
        break;
    case KIND_VLAN:
        length = snprintf(name, size, "vlan%u", number);
        break;
    case KIND_CPU:
        length = snprintf(name, size, "cpu%u", unit);
        break;
    default:
        length = snprintf(name, size, "limid-%02x%02x%02x%02x", limid.octet[0], limid.octet[1],
                          limid.octet[2], limid.octet[3]);
        break;
    }
    return length >= 0 && (size_t)length < size ? 0 : -1;
}
