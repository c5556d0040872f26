#include "Tools/macho_loader/UnwindInfo.h"

#include "Tools/macho_loader/CByteReader.h"

#include <map>

namespace
{
constexpr std::uint32_t kRegularPage = 2;
constexpr std::uint32_t kCompressedPage = 3;

struct SHeader
{
    std::uint32_t version;
    std::uint32_t commonEncodings; // offset of the encodings that all pages share
    std::uint32_t commonEncodingCount;
    std::uint32_t personalities;
    std::uint32_t personalityCount;
    std::uint32_t pages; // the last one only tells where the code ends
    std::uint32_t pageCount;
};

struct SPage
{
    std::uint32_t firstFunction;
    std::uint32_t content; // 0: none
    std::uint32_t languageData;
};

struct SPair
{
    std::uint32_t function;
    std::uint32_t value; // an encoding or the offset of language data
};

class CUnwindInfoReader
{
public:
    explicit CUnwindInfoReader(std::span<const std::uint8_t> inSection)
        : mSection(inSection), mHeader(ReadAt<SHeader>(inSection, 0))
    {
        for (std::uint32_t i = 0; i + 1 < mHeader.pageCount; ++i)
        {
            ReadLanguageData(PageAt(i).languageData, PageAt(i + 1).languageData);
            ReadPage(PageAt(i));
        }
    }

    std::vector<SUnwindEntry> Entries() const
    {
        std::vector<SUnwindEntry> entries;
        for (std::size_t i = 0; i < mFunctions.size(); ++i)
        {
            const auto& [function, encoding] = mFunctions[i];
            const std::uint32_t end = i + 1 < mFunctions.size() ? mFunctions[i + 1].function
                                                                : PageAt(mHeader.pageCount - 1).firstFunction;
            if (encoding == 0 || end <= function)
                continue;
            SUnwindEntry& entry = entries.emplace_back();
            entry.function = function;
            entry.size = end - function;
            entry.encoding = encoding;
            entry.personalitySlot = PersonalitySlot((encoding & kUnwindPersonalityMask) >> 28);
            if ((encoding & kUnwindHasLanguageData) != 0)
                entry.languageData = mLanguageData.at(function);
        }
        return entries;
    }

private:
    SPage PageAt(std::uint32_t inIndex) const
    {
        return ReadAt<SPage>(mSection, mHeader.pages + inIndex * sizeof(SPage));
    }

    std::uint32_t PersonalitySlot(std::uint32_t inNumber) const
    {
        return inNumber == 0 ? 0
                             : ReadAt<std::uint32_t>(mSection, mHeader.personalities +
                                                                   (inNumber - 1) * sizeof(std::uint32_t));
    }

    void ReadLanguageData(std::uint32_t inStart, std::uint32_t inEnd)
    {
        for (CByteReader reader(mSection, inStart); reader.Offset() < inEnd;)
        {
            const auto pair = reader.Read<SPair>();
            mLanguageData[pair.function] = pair.value;
        }
    }

    void ReadPage(const SPage& inPage)
    {
        if (inPage.content == 0)
            return;
        CByteReader header(mSection, inPage.content);
        const auto kind = header.Read<std::uint32_t>();
        const std::uint32_t list = inPage.content + header.Read<std::uint16_t>();
        const std::uint32_t count = header.Read<std::uint16_t>();
        CByteReader entries(mSection, list);
        if (kind == kRegularPage)
        {
            for (std::uint32_t i = 0; i < count; ++i)
                mFunctions.push_back(entries.Read<SPair>());
        }
        else if (kind == kCompressedPage)
        {
            const std::uint32_t ownEncodings = inPage.content + header.Read<std::uint16_t>();
            for (std::uint32_t i = 0; i < count; ++i)
                mFunctions.push_back(
                    Expand(entries.Read<std::uint32_t>(), inPage.firstFunction, ownEncodings));
        }
        else
            throw CMachOError("unexpected page in the unwind table");
    }

    /** A compressed entry: the function's distance below, the number of its encoding in the top byte. */
    SPair Expand(std::uint32_t inEntry, std::uint32_t inFirstFunction, std::uint32_t inOwnEncodings) const
    {
        constexpr std::uint32_t kDistanceMask = 0x00FFFFFF;
        const std::uint32_t number = inEntry >> 24;
        const bool isCommon = number < mHeader.commonEncodingCount;
        const std::uint32_t list = isCommon ? mHeader.commonEncodings : inOwnEncodings;
        const std::uint32_t place = isCommon ? number : number - mHeader.commonEncodingCount;
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
