/**
 * Dumps that show where the stream was flushed, so that tests can tell the two line ends apart.
 */
#ifndef FILTER_COMMON_TESTS_TEXT_SUPPORT_H
#define FILTER_COMMON_TESTS_TEXT_SUPPORT_H

#include "support.h"

#include <ostream>
#include <sstream>
#include <string>

namespace FiltersCommon::test {

/** Marks each flush in the text of a MarkedStream. No dump contains it. */
constexpr char FLUSH = '|';

/** A line that ends with a flush. */
inline std::string eol(const std::string& line) { return line + "\n" + FLUSH; }

/** A line that ends without one. */
inline std::string nl(const std::string& line) { return line + "\n"; }

class MarkedStream : public std::ostream {
public:
    MarkedStream() : std::ostream(nullptr) { rdbuf(&buffer_); }

    std::string text() const { return buffer_.str(); }

private:
    class Buffer : public std::stringbuf {
        int sync() override
        {
            sputc(FLUSH);
            return 0;
        }
    };

    Buffer buffer_;
};

/** What the operator of the object's static type writes, flushes included. */
template <class T>
std::string markedDump(const T& object)
{
    using ::operator<<;
    MarkedStream out;
    out << object;
    return out.text();
}

} // namespace FiltersCommon::test

#endif // FILTER_COMMON_TESTS_TEXT_SUPPORT_H
