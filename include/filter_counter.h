/**
 * The counter of a rule: which hardware counter counts its hits, and what is counted.
 *
 * Unlike in the rest of the model, method names deliberately begin with a capital letter.
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
    /** Accepts any type. */
    Counter(unsigned short id, counter_type_t type) : id_(id), type_(type) {}
    /** Keeps the low 16 bits of the message's identifier, and its type unchanged. */
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
 * Prints two lines, with no newline after the second. The width set on the stream applies to both.
 * Deliberately in this namespace, unlike the operators of the other classes.
 */
std::ostream& operator<<(std::ostream& out, const Counter& counter);

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_COUNTER_H
