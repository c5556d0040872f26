#pragma once
#include <array>

/**
 * The AAX identifier of one of the wrapped plug-in's parameters: its index in at least five decimal digits.
 *
 * A value of its own for every use, so that two threads never share the text.
 */
class CParameterId
{
public:
    explicit CParameterId(long inIndex) noexcept;
    const char* Get() const noexcept { return mText.data(); }

private:
    std::array<char, 24> mText{};
};

/**
 * The index that an identifier stands for. The empty identifier is index 0.
 * @return -1 when a character is no digit, when the number does not fit, and for null.
 */
long ParameterIndexFromId(const char* inId) noexcept;
