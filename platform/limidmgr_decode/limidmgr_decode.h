/**
 * Logical interface identifiers and their names. Plain C and C++.
 */
#ifndef LIMIDMGR_DECODE_H
#define LIMIDMGR_DECODE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** A logical interface identifier; opaque to callers, who copy and compare its four bytes. */
typedef struct limid {
    uint8_t octet[4];
} limid_t;

/**
 * Writes the interface name of @p limid into @p name, which has room for @p size characters.
 *
 * The name is cut to what fits and always terminated when @p size is above 0; @p name may be null
 * when @p size is 0.
 *
 * @return 0, or -1 if the name and its terminator did not fit.
 */
int limid_to_intfname(limid_t limid, char* name, size_t size);

#ifdef __cplusplus
}
#endif

#endif /* LIMIDMGR_DECODE_H */
