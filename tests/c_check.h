/**
 * The checks of the program in C, and its parts.
 */
#ifndef FILTER_COMMON_TESTS_C_CHECK_H
#define FILTER_COMMON_TESTS_C_CHECK_H

/** Reports a condition that does not hold; the program then fails at its end. */
void check(int holds, const char* file, int line, const char* condition);

/** In every build, unlike assert. */
#define CHECK(condition) check((condition) ? 1 : 0, __FILE__, __LINE__, #condition)

/** Calls each function of filter_refusals_c.h. */
void checkRefusals(void);

#endif /* FILTER_COMMON_TESTS_C_CHECK_H */
