#include "Source/plugins/PresetRecord.h"

#include <cmath>
#include <cstdlib>
#include <vector>

namespace
{
void ReadValues(const SPresetRecord& inRecord)
{
    float sum = 0.0F;
    for (std::int32_t i = 0; !inRecord.mHasChunk && i < inRecord.mCount; ++i)
        sum += ParameterValue(inRecord, static_cast<std::size_t>(i));
    if (std::isnan(sum) && inRecord.mCount == 0)
        std::abort();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inData, std::size_t inSize)
{
    const auto* const first = reinterpret_cast<const std::byte*>(inData);
    const std::vector<std::byte> bytes(first, first + inSize); // memory that ends where the file does
    if (const std::optional<SPresetRecord> program = ReadProgramRecord(bytes))
        ReadValues(*program);
    const std::optional<SPresetRecord> bank = ReadBankRecord(bytes);
    if (!bank.has_value() || bank->mHasChunk)
        return 0;
    std::span<const std::byte> rest = bank->mContent;
    while (const std::size_t size = ProgramRecordSize(rest))
    {
        if (size > rest.size())
            break;
        if (const std::optional<SPresetRecord> program = ReadProgramRecord(rest.first(size)))
            ReadValues(*program);
        rest = rest.subspan(size);
    }
    return 0;
}
