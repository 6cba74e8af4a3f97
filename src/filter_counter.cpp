#include "filter_counter.h"

#include "filter_counter_fields.h"
#include "message_io.h"

#include <ostream>

namespace FiltersCommon {

Counter::Counter(const CounterPB& pb)
{
    MessageReader<CounterPB> reader(pb);
    *this = readCounter(reader);
}

void Counter::Serialize(CounterPB* pb) const
{
    MessageWriter<CounterPB> writer(pb);
    writeCounter(writer, *this);
}

namespace {

const char* nameOf(counter_type_t type)
{
    switch (type) {
    case COUNTER_TYPE_INVALID:
        return "Invalid";
    case COUNTER_TYPE_PACKETS:
        return "Packets";
    case COUNTER_TYPE_OCTETS:
        return "Octets";
    }
    return "Unknown";
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Counter& counter)
{
    const std::streamsize width = out.width();
    out << "ID: " << counter.GetId() << "\n";
    out.width(width);
    return out << "Type: " << nameOf(counter.GetType());
}

} // namespace FiltersCommon
