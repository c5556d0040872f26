#include "Tools/aaxhost/player/StateFile.h"

#include "Tools/support/CWholeFile.h"

#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <iterator>
#include <string_view>

namespace
{
constexpr std::string_view kMagic = "aaxstate";
constexpr std::uint32_t kVersion = 1;

class CByteWriter
{
public:
    void Put(std::span<const std::byte> inBytes)
    {
        mBytes.insert(mBytes.end(), inBytes.begin(), inBytes.end());
    }
    void PutNumber(std::uint32_t inNumber)
    {
        for (int shift = 0; shift < 32; shift += 8)
            mBytes.push_back(static_cast<std::byte>(inNumber >> shift));
    }
    void PutText(std::string_view inText)
    {
        PutNumber(static_cast<std::uint32_t>(inText.size()));
        Put(std::as_bytes(std::span(inText)));
    }
    std::vector<std::byte> Take() { return std::move(mBytes); }

private:
    std::vector<std::byte> mBytes;
};

/** Takes from the front; once something was not there, everything else is empty or 0 as well. */
class CByteReader
{
public:
    explicit CByteReader(std::span<const std::byte> inBytes) : mRest(inBytes) {}
    bool IsWhole() const { return mIsWhole; }
    bool IsAtEnd() const { return mRest.empty(); }
    std::span<const std::byte> Take(std::size_t inSize)
    {
        mIsWhole = mIsWhole && inSize <= mRest.size();
        const std::span<const std::byte> taken =
            mIsWhole ? mRest.first(inSize) : std::span<const std::byte>();
        mRest = mRest.subspan(taken.size());
        return taken;
    }
    std::uint32_t TakeNumber()
    {
        std::uint32_t number = 0;
        int shift = 0;
        for (const std::byte byte : Take(4))
        {
            number |= std::to_integer<std::uint32_t>(byte) << shift;
            shift += 8;
        }
        return number;
    }
    std::string TakeText()
    {
        const std::span<const std::byte> text = Take(TakeNumber());
        return {reinterpret_cast<const char*>(text.data()), text.size()};
    }

private:
    std::span<const std::byte> mRest;
    bool mIsWhole = true;
};

void PutChunk(CByteWriter& ioWriter, const CStateChunk& inChunk)
{
    const AAX_SPlugInChunk& record = inChunk.Record();
    ioWriter.PutNumber(static_cast<std::uint32_t>(record.mVersion));
    for (const AAX_CTypeID code :
         {record.mManufacturerID, record.mProductID, record.mPlugInID, record.mChunkID})
        ioWriter.PutNumber(code);
    ioWriter.Put(std::as_bytes(std::span(record.mName)));
    ioWriter.PutNumber(static_cast<std::uint32_t>(inChunk.Data().size()));
    ioWriter.Put(inChunk.Data());
}

CStateChunk TakeChunk(CByteReader& ioReader)
{
    const std::uint32_t version = ioReader.TakeNumber();
    const AAX_CTypeID codes[] = {ioReader.TakeNumber(), ioReader.TakeNumber(), ioReader.TakeNumber(),
                                 ioReader.TakeNumber()};
    const std::span<const std::byte> name = ioReader.Take(sizeof(AAX_SPlugInChunk::mName));
    const std::span<const std::byte> data = ioReader.Take(ioReader.TakeNumber());
    CStateChunk chunk(data.size());
    AAX_SPlugInChunk& record = chunk.Record();
    record.mVersion = static_cast<std::int32_t>(version);
    record.mManufacturerID = codes[0];
    record.mProductID = codes[1];
    record.mPlugInID = codes[2];
    record.mChunkID = codes[3];
    std::ranges::copy(std::as_bytes(std::span(name)),
                      std::as_writable_bytes(std::span(record.mName)).begin());
    std::ranges::copy(data, chunk.Room().begin());
    return chunk;
}
} // namespace

std::vector<std::byte> StateToBytes(const SInstanceState& inState)
{
    CByteWriter writer;
    writer.Put(std::as_bytes(std::span(kMagic)));
    writer.PutNumber(kVersion);
    writer.PutText(inState.mProduct.mEffectID);
    writer.PutText(inState.mProduct.mName);
    writer.PutNumber(inState.mProduct.mManufacturerID);
    writer.PutNumber(inState.mProduct.mProductID);
    writer.PutNumber(inState.mProduct.mPlugInID);
    writer.PutNumber(static_cast<std::uint32_t>(inState.mChunks.size()));
    for (const CStateChunk& chunk : inState.mChunks)
        PutChunk(writer, chunk);
    return writer.Take();
}

COutcome<SInstanceState> StateFromBytes(std::span<const std::byte> inBytes)
{
    CByteReader reader(inBytes);
    if (!std::ranges::equal(reader.Take(kMagic.size()), std::as_bytes(std::span(kMagic))))
        return SProblem{"It is no state file."};
    if (const std::uint32_t version = reader.TakeNumber(); version != kVersion && reader.IsWhole())
        return SProblem{
            fmt::format("It is a state file of version {}, and only {} is known.", version, kVersion)};
    SInstanceState state;
    state.mProduct.mEffectID = reader.TakeText();
    state.mProduct.mName = reader.TakeText();
    state.mProduct.mManufacturerID = reader.TakeNumber();
    state.mProduct.mProductID = reader.TakeNumber();
    state.mProduct.mPlugInID = reader.TakeNumber();
    const std::uint32_t count = reader.TakeNumber();
    for (std::uint32_t i = 0; i < count && reader.IsWhole(); ++i)
        state.mChunks.push_back(TakeChunk(reader));
    if (!reader.IsWhole() || !reader.IsAtEnd())
        return SProblem{"The state file is not whole."};
    return state;
}

COutcome<SDone> WriteStateFile(const std::string& inPath, const SInstanceState& inState)
{
    return WriteWholeFile(inPath, StateToBytes(inState));
}

COutcome<SInstanceState> ReadStateFile(const std::string& inPath)
{
    std::ifstream file(inPath, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file)
        return SProblem{fmt::format("'{}' cannot be read.", inPath)};
    auto state = StateFromBytes(std::as_bytes(std::span(text)));
    if (!state)
        return SProblem{fmt::format("'{}' cannot be used: {}", inPath, state.Problem().mSentence)};
    return state;
}
