#pragma once
#include "Interfaces/AAX/AAX_IDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

/** Shows a switch as one of two texts, and knows exactly these two. */
template <typename T>
class AAX_CBinaryDisplayDelegate : public AAX_IDisplayDelegate<T>
{
    static_assert(std::is_same_v<T, bool>);

public:
    AAX_CBinaryDisplayDelegate(const char* inFalseText, const char* inTrueText)
        : mFalseString(inFalseText),
          mTrueString(inTrueText),
          mMaxStrLength(static_cast<std::int32_t>(std::max(mFalseString.Length(), mTrueString.Length())))
    {
    }

    AAX_CBinaryDisplayDelegate* Clone() const override { return new AAX_CBinaryDisplayDelegate(*this); }

    bool ValueToString(T inValue, AAX_CString* outText) const override
    {
        if (outText == nullptr)
            return false;
        *outText = inValue ? mTrueString : mFalseString;
        return true;
    }

    /** Without shorter texts the full ones, whatever the limit. */
    bool ValueToString(T inValue, std::int32_t inMaxNumChars, AAX_CString* outText) const override
    {
        if (mShortenedStrings.empty() || inMaxNumChars >= mMaxStrLength)
            return ValueToString(inValue, outText);
        if (outText == nullptr)
            return false;
        const auto fits = [inMaxNumChars](const StringTable& inRow)
        { return inRow.mStrLength <= inMaxNumChars; };
        const auto last = std::find_if(mShortenedStrings.rbegin(), mShortenedStrings.rend(), fits);
        const StringTable& row = last != mShortenedStrings.rend() ? *last : mShortenedStrings.front();
        *outText = inValue ? row.mTrueString : row.mFalseString;
        return true;
    }

    bool StringToValue(const AAX_CString& inText, T* outValue) const override
    {
        if (outValue == nullptr)
            return false;
        *outValue = inText == mTrueString;
        return *outValue || inText == mFalseString;
    }

    /** Texts for limits below the length of the full ones; a row added later is preferred where both fit. */
    void AddShorterTexts(const char* inFalseText, const char* inTrueText)
    {
        StringTable row{0, inFalseText, inTrueText};
        row.mStrLength =
            static_cast<std::int32_t>(std::max(row.mFalseString.Length(), row.mTrueString.Length()));
        mShortenedStrings.push_back(row);
    }

private:
    struct StringTable
    {
        std::int32_t mStrLength = 0;
        AAX_CString mFalseString;
        AAX_CString mTrueString;
    };

    AAX_CString mFalseString;
    AAX_CString mTrueString;
    std::int32_t mMaxStrLength = 0;
    std::vector<StringTable> mShortenedStrings;
};
