/**
 * The counter of a rule: which hardware counter its hits are counted in, and what is counted.
 *
 * Its methods begin with a capital, unlike the rest of the model; deliberate.
 */
#ifndef FILTER_COMMON_FILTER_COUNTER_H
#define FILTER_COMMON_FILTER_COUNTER_H

#include "filter_types.h"

#include <iosfwd>

#pragma GCC visibility push(default)

namespace FiltersCommon {

class CounterPB;
struct FILTERS_COMMON_INTERNAL CounterRows; // describes the members

class Counter {
public:
    /** Identifier 0 and type COUNTER_TYPE_INVALID: nothing is counted. */
    Counter() : Counter(0, COUNTER_TYPE_INVALID) {}
    /** Any type is taken as it stands. */
    Counter(unsigned short id, counter_type_t type) : id_(id), type_(type) {}
    /** Keeps the low 16 bits of the message's identifier, and its type as it stands. */
    explicit Counter(const CounterPB& pb);

    unsigned short GetId() const { return id_; }
    counter_type_t GetType() const { return type_; }

    /** Sets both fields of the message. */
    void Serialize(CounterPB* pb) const;

    bool operator==(const Counter& other) const { return id_ == other.id_ && type_ == other.type_; }
    bool operator!=(const Counter& other) const { return !(*this == other); }

private:
    friend struct CounterRows;

    unsigned short id_;
    counter_type_t type_;
};

/**
 * Two lines without a line end after the second. The width that the stream has on entry applies to
 * both. In this namespace, unlike the operators of the other classes; deliberate.
 */
std::ostream& operator<<(std::ostream& out, const Counter& counter);

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_COUNTER_H
