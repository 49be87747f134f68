// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support_files/RunBench.h"

/// One step of a wrapper: what it asks of the host, and what is told when that fails.
template <class Wrapper>
struct StepOf {
    void (*step)(Wrapper&);
    std::string calls;                  ///< "; " between them; nothing: whatever they are
    std::string failure;                ///< without the error's number and text
    std::string lastFailure = failure;  ///< of the last call, where that tells something else
};

/// Performs each step undisturbed, and then with each of its calls failing: that is told, nothing is called after it,
/// and no step does anything any more.
/// @param wrapper of a bench that is ready for every step and has the host's calls
template <class Bench, class Wrapper>
void ExpectSteps(Wrapper Bench::*wrapper, const std::vector<StepOf<Wrapper>>& steps) {
    for (const auto& [step, calls, failure, lastFailure] : steps) {
        SCOPED_TRACE(failure);
        Bench undisturbed;
        undisturbed.calls.Forget();
        step(undisturbed.*wrapper);
        const std::string joined = Joined(undisturbed.calls.Operations());
        EXPECT_EQ(joined, calls.empty() ? joined : calls);
        EXPECT_EQ((undisturbed.*wrapper).ErrorDescription(), "");
        const std::size_t callCount = undisturbed.calls.Operations().size();
        for (std::size_t failing = 1; failing <= callCount; ++failing) {
            Bench bench;
            bench.calls.Forget();
            bench.calls.Fail(HostCalls::anyOperation, RunBench::hostError, static_cast<int>(failing));
            step(bench.*wrapper);
            const std::string told = (failing < callCount ? failure : lastFailure) + RunBench::errorSuffix;
            EXPECT_EQ((bench.*wrapper).ErrorDescription(), told);
            EXPECT_EQ(bench.calls.Operations().size(), failing) << "nothing after it";
            bench.calls.Forget();
            for (const auto& other : steps)
                other.step(bench.*wrapper);
            EXPECT_EQ(bench.calls.Operations(), std::vector<std::string>());
            EXPECT_EQ((bench.*wrapper).ErrorDescription(), told);
        }
    }
}
