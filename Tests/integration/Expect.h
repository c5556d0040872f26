#pragma once
#include "Tools/support/COutcome.h"

#include <stdexcept>
#include <utility>

/** @return what the step made. Throws std::runtime_error with the reason where it made nothing. */
template <class Value>
Value Expect(COutcome<Value> inOutcome)
{
    if (!inOutcome)
        throw std::runtime_error(inOutcome.Problem().mSentence);
    return std::move(*inOutcome);
}
