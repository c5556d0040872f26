#pragma once
#include <string>
#include <utility>
#include <variant>

/** Why something was not done: one sentence for the person at the command line, with its full stop. */
struct SProblem
{
    std::string mSentence;
};

/** What a step made, or why it could not. */
template <class T>
class [[nodiscard]] COutcome
{
public:
    COutcome(T inValue) : mState(std::move(inValue)) {}
    COutcome(SProblem inProblem) : mState(std::move(inProblem)) {}

    explicit operator bool() const noexcept { return std::holds_alternative<T>(mState); }
    /** Only where there is a value. */
    T& operator*() { return std::get<T>(mState); }
    const T& operator*() const { return std::get<T>(mState); }
    T* operator->() { return &std::get<T>(mState); }
    const T* operator->() const { return &std::get<T>(mState); }
    /** Only where there is a problem. */
    const SProblem& Problem() const { return std::get<SProblem>(mState); }

private:
    std::variant<T, SProblem> mState;
};

/** For a step that makes nothing. */
struct SDone
{
};
