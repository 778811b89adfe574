// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_FUZZ_FUZZENVIRONMENT_H
#define MESSAGEAPI_FUZZ_FUZZENVIRONMENT_H

/**
 * The process setting that every fuzz target shares, made once before the first input.
 *
 * Warnings that bad input may legitimately cause are dropped, so that the fuzzer does not
 * spend its time writing them. A report of the platform's assertion function is a broken
 * invariant, which no input may cause: it aborts, so the fuzzer keeps the input as a finding.
 */
class FuzzEnvironment
{
public:
    static void setUp();
};

#endif // MESSAGEAPI_FUZZ_FUZZENVIRONMENT_H
