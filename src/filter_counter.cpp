#include "filter_counter.h"

#include "wire/filter_counter_rows.h"
#include "wire/message_io.h"

#include <ostream>

namespace FiltersCommon {

Counter::Counter(const CounterPB& pb)
{
    MessageReader<CounterPB> reader(pb);
    CounterRows::of(this).read(reader, *this);
}

void Counter::Serialize(CounterPB* pb) const
{
    MessageWriter<CounterPB> writer(pb);
    CounterRows::of(this).write(writer, *this);
}

std::ostream& operator<<(std::ostream& out, const Counter& counter)
{
    CounterRows::of(&counter).dump(out, counter);
    return out;
}

} // namespace FiltersCommon
