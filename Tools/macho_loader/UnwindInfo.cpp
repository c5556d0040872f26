#include "Tools/macho_loader/UnwindInfo.h"

#include "Tools/macho_loader/CByteReader.h"

#include <map>

namespace
{
constexpr std::uint32_t kRegularPage = 2;
constexpr std::uint32_t kCompressedPage = 3;

struct SHeader
{
    std::uint32_t mVersion;
    std::uint32_t mCommonEncodings; // offset of the encodings that all pages share
    std::uint32_t mCommonEncodingCount;
    std::uint32_t mPersonalities;
    std::uint32_t mPersonalityCount;
    std::uint32_t mPages; // the last one only tells where the code ends
    std::uint32_t mPageCount;
};

struct SPage
{
    std::uint32_t mFirstFunction;
    std::uint32_t mContent; // 0: none
    std::uint32_t mLanguageData;
};

struct SPair
{
    std::uint32_t mFunction;
    std::uint32_t mValue; // an encoding or the offset of language data
};

class CUnwindInfoReader
{
public:
    explicit CUnwindInfoReader(std::span<const std::uint8_t> inSection)
        : mSection(inSection), mHeader(ReadAt<SHeader>(inSection, 0))
    {
        for (std::uint32_t i = 0; i + 1 < mHeader.mPageCount; ++i)
        {
            ReadLanguageData(PageAt(i).mLanguageData, PageAt(i + 1).mLanguageData);
            ReadPage(PageAt(i));
        }
    }

    std::vector<SUnwindEntry> Entries() const
    {
        std::vector<SUnwindEntry> entries;
        for (std::size_t i = 0; i < mFunctions.size(); ++i)
        {
            const auto& [function, encoding] = mFunctions[i];
            const std::uint32_t end = i + 1 < mFunctions.size()
                                          ? mFunctions[i + 1].mFunction
                                          : PageAt(mHeader.mPageCount - 1).mFirstFunction;
            if (encoding == 0 || end <= function)
                continue;
            SUnwindEntry& entry = entries.emplace_back();
            entry.mFunction = function;
            entry.mSize = end - function;
            entry.mEncoding = encoding;
            entry.mPersonalitySlot = PersonalitySlot((encoding & kUnwindPersonalityMask) >> 28);
            if ((encoding & kUnwindHasLanguageData) != 0)
                entry.mLanguageData = mLanguageData.at(function);
        }
        return entries;
    }

private:
    SPage PageAt(std::uint32_t inIndex) const
    {
        return ReadAt<SPage>(mSection, mHeader.mPages + inIndex * sizeof(SPage));
    }

    std::uint32_t PersonalitySlot(std::uint32_t inNumber) const
    {
        return inNumber == 0 ? 0
                             : ReadAt<std::uint32_t>(mSection, mHeader.mPersonalities +
                                                                   (inNumber - 1) * sizeof(std::uint32_t));
    }

    void ReadLanguageData(std::uint32_t inStart, std::uint32_t inEnd)
    {
        for (CByteReader reader(mSection, inStart); reader.Offset() < inEnd;)
        {
            const auto pair = reader.Read<SPair>();
            mLanguageData[pair.mFunction] = pair.mValue;
        }
    }

    void ReadPage(const SPage& inPage)
    {
        if (inPage.mContent == 0)
            return;
        CByteReader header(mSection, inPage.mContent);
        const auto kind = header.Read<std::uint32_t>();
        const std::uint32_t list = inPage.mContent + header.Read<std::uint16_t>();
        const std::uint32_t count = header.Read<std::uint16_t>();
        CByteReader entries(mSection, list);
        if (kind == kRegularPage)
        {
            for (std::uint32_t i = 0; i < count; ++i)
                mFunctions.push_back(entries.Read<SPair>());
        }
        else if (kind == kCompressedPage)
        {
            const std::uint32_t ownEncodings = inPage.mContent + header.Read<std::uint16_t>();
            for (std::uint32_t i = 0; i < count; ++i)
                mFunctions.push_back(
                    Expand(entries.Read<std::uint32_t>(), inPage.mFirstFunction, ownEncodings));
        }
        else
            throw CMachOError("unexpected page in the unwind table");
    }

    /** A compressed entry: the function's distance below, the number of its encoding in the top byte. */
    SPair Expand(std::uint32_t inEntry, std::uint32_t inFirstFunction, std::uint32_t inOwnEncodings) const
    {
        constexpr std::uint32_t kDistanceMask = 0x00FFFFFF;
        const std::uint32_t number = inEntry >> 24;
        const bool isCommon = number < mHeader.mCommonEncodingCount;
        const std::uint32_t list = isCommon ? mHeader.mCommonEncodings : inOwnEncodings;
        const std::uint32_t place = isCommon ? number : number - mHeader.mCommonEncodingCount;
        return {inFirstFunction + (inEntry & kDistanceMask),
                ReadAt<std::uint32_t>(mSection, list + place * sizeof(std::uint32_t))};
    }

    std::span<const std::uint8_t> mSection;
    SHeader mHeader;
    std::vector<SPair> mFunctions;
    std::map<std::uint32_t, std::uint32_t> mLanguageData; // by function
};
} // namespace

std::vector<SUnwindEntry> ReadUnwindInfo(std::span<const std::uint8_t> inSection)
{
    return CUnwindInfoReader(inSection).Entries();
}
