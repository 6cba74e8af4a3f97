/**
 * The envelope for passing around the bytes of a serialized entry or group.
 */
#ifndef FILTER_COMMON_FILTER_SERIALIZED_H
#define FILTER_COMMON_FILTER_SERIALIZED_H

#include <cstdint>
#include <memory>
#include <string>

#pragma GCC visibility push(default)

namespace FiltersCommon {

/**
 * An owning byte buffer that is filled once. The bytes are followed by a terminating zero, which
 * size() includes; the constructors of FiltersEntry and FiltersGroup rely on that.
 */
class FiltersSerialized {
public:
    /** Empty: size() is 0 and data() is null. */
    FiltersSerialized() = default;
    /** @see copyData */
    explicit FiltersSerialized(const std::string& s);
    /** A copy owns its own bytes; a moved-from object is left empty. */
    FiltersSerialized(const FiltersSerialized& other);
    FiltersSerialized(FiltersSerialized&& other) noexcept;
    FiltersSerialized& operator=(const FiltersSerialized& other);
    FiltersSerialized& operator=(FiltersSerialized&& other) noexcept;
    virtual ~FiltersSerialized() = default;

    /** Number of bytes held, the terminating zero included; 0 when empty. */
    virtual std::uint32_t size() const { return size_; }

    /** Fills an empty buffer. Filling it a second time fails an assertion, in every build. */
    virtual void setData(const std::string& s);

    /**
     * Fills the buffer with @p s and a terminating zero, and frees what it held. Throws
     * std::bad_alloc and changes nothing if memory runs out or the size does not fit 32 bits.
     */
    void copyData(const std::string& s);

    /** The bytes, valid until the buffer is refilled or destroyed; null when empty. */
    const char* data() const { return data_.get(); }

private:
    std::uint32_t size_ = 0;
    std::unique_ptr<char[]> data_;
};

} // namespace FiltersCommon

#pragma GCC visibility pop

#endif // FILTER_COMMON_FILTER_SERIALIZED_H
