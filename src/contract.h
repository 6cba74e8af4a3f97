/**
 * Broken contracts: reported as the C library reports a failed assertion, then the process aborts.
 * Active in every build, even with NDEBUG.
 */
#ifndef FILTER_COMMON_SRC_CONTRACT_H
#define FILTER_COMMON_SRC_CONTRACT_H

namespace FiltersCommon {

/**
 * What a report contains besides the expression. File and function are given by hand so that they
 * depend neither on the compiler nor on the build directory; the file is the bare name of the
 * source file. Callers rely on some of the line numbers, so those are given by hand too.
 */
struct ContractPlace {
    const char* file;
    unsigned line;
    const char* function;
};

/** Writes "program: file:line: function: Assertion `expression' failed." and aborts. */
[[noreturn]] void contractBroken(const char* expression, const ContractPlace& place);

} // namespace FiltersCommon

/** Reports a broken contract unless the condition holds; its text is part of the report. */
#define FILTERS_COMMON_REQUIRE(condition, ...)                                                     \
    do {                                                                                           \
        if (!(condition))                                                                          \
            ::FiltersCommon::contractBroken(#condition, {__VA_ARGS__});                            \
    } while (false)

#endif // FILTER_COMMON_SRC_CONTRACT_H
