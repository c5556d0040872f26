#include "Tools/macho_loader/CEhFrameWriter.h"

#include <cstring>
#include <string_view>

namespace
{
constexpr std::uint8_t kAbsolutePointer = 0x00;
constexpr std::size_t kEntryAlignment = 8;

void AppendText(ByteVector& ioBytes, std::string_view inText)
{
    ioBytes.insert(ioBytes.end(), inText.begin(), inText.end());
    ioBytes.push_back(0);
}
} // namespace

std::size_t CEhFrameWriter::BeginEntry()
{
    AppendNumber(mBytes, std::uint32_t{0}); // the length: written when it is known
    return mBytes.size();
}

void CEhFrameWriter::EndEntry(std::size_t inStart)
{
    while ((mBytes.size() - inStart + kLengthSize) % kEntryAlignment != 0)
        mBytes.push_back(0); // an instruction that does nothing
    const auto length = static_cast<std::uint32_t>(mBytes.size() - inStart);
    std::memcpy(&mBytes[inStart - kLengthSize], &length, sizeof(length));
}

std::size_t CEhFrameWriter::CommonPart(const SUnwindFunction& inFunction)
{
    const auto [place, isNew] =
        mCommonParts.try_emplace({inFunction.mPersonality, inFunction.mCommonInstructions}, mBytes.size());
    if (!isNew)
        return place->second;

    constexpr std::uint8_t kVersion = 1;
    constexpr std::uint8_t kMinusEight = 0x78; // as a signed number in seven bits
    constexpr std::uint8_t kReturnAddress = 16;
    const bool hasHandler = inFunction.mPersonality != 0;
    const std::size_t start = BeginEntry();
    AppendNumber(mBytes, std::uint32_t{0}); // what tells it from a function's entry
    mBytes.push_back(kVersion);
    AppendText(mBytes, hasHandler ? "zPLR" : "zR");
    AppendUleb(mBytes, 1);         // unit of code distances
    mBytes.push_back(kMinusEight); // unit of distances in the frame
    AppendUleb(mBytes, kReturnAddress);
    if (hasHandler)
    {
        AppendUleb(mBytes, 1 + sizeof(std::uint64_t) + 1 + 1);
        mBytes.push_back(kAbsolutePointer);
        AppendNumber(mBytes, inFunction.mPersonality);
        mBytes.push_back(kAbsolutePointer); // language data
    }
    else
        AppendUleb(mBytes, 1);
    mBytes.push_back(kAbsolutePointer); // code
    AppendBytes(mBytes, inFunction.mCommonInstructions);
    EndEntry(start);
    return place->second;
}

void CEhFrameWriter::Add(const SUnwindFunction& inFunction)
{
    const std::size_t commonPart = CommonPart(inFunction);
    const std::size_t start = BeginEntry();
    AppendNumber(mBytes, static_cast<std::uint32_t>(start - commonPart));
    AppendNumber(mBytes, inFunction.mCode);
    AppendNumber(mBytes, inFunction.mSize);
    if (inFunction.mPersonality != 0)
    {
        AppendUleb(mBytes, sizeof(std::uint64_t));
        AppendNumber(mBytes, inFunction.mLanguageData);
    }
    else
        AppendUleb(mBytes, 0);
    AppendBytes(mBytes, inFunction.mInstructions);
    EndEntry(start);
}

ByteVector CEhFrameWriter::Take()
{
    AppendNumber(mBytes, std::uint32_t{0});
    return std::move(mBytes);
}
