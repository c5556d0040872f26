#pragma once
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/**
 * The texts that a plug-in gave for values of its parameters. It gives one for the value that it has, and can
 * be asked for no other; so what it gave is kept for when the host asks again, or a person types it.
 *
 * Values are normalized. Threads: any.
 */
class CValueTexts
{
public:
    /** Of one parameter; a newer text takes the place of the oldest. */
    static constexpr std::size_t kMostTexts = 256;

    void Note(std::size_t inParameter, float inValue, const std::string& inText);
    /** The text of exactly that value. */
    std::optional<std::string> TextOf(std::size_t inParameter, float inValue) const;
    /** A number that was shown for a value of which no text is known. */
    void NoteNumber(std::size_t inParameter, const std::string& inText);
    /** The value whose text this is, else, where it was not shown as a number, the one whose text has the
     * same number in it. */
    std::optional<float> ValueOf(std::size_t inParameter, std::string_view inText) const;

private:
    struct SText
    {
        float mValue;
        std::string mText;
    };
    struct SParameter
    {
        std::vector<SText> mTexts;                   // the oldest first
        std::set<std::string, std::less<>> mNumbers; // that were shown
    };

    /** Under the mutex, as the next. */
    SParameter& MakeRoomFor(std::size_t inParameter);
    const SParameter& Find(std::size_t inParameter) const noexcept;

    mutable std::mutex mMutex;
    std::vector<SParameter> mParameters; // as many as were noted
};
