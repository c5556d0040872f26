#include "Tools/macho_loader/CByteReader.h"
#include "Tools/macho_loader/CMachOFile.h"
#include "Tools/macho_loader/MachOFormat.h"

namespace
{
constexpr std::uint64_t kPointerSize = 8;

/** Ordinals below 1 are stored in the lowest four bits of a negative number. */
std::int64_t SpecialOrdinal(std::uint8_t inImmediate)
{
    constexpr std::int64_t kSignExtension = -16;
    return inImmediate == 0 ? 0 : kSignExtension + inImmediate;
}
} // namespace

std::uint64_t CMachOFile::SegmentAddress(std::size_t inSegment) const
{
    if (inSegment >= mSegments.size())
        throw CMachOError(mPath + ": a fixup names a segment that does not exist");
    return mSegments[inSegment].mAddress;
}

std::vector<std::uint64_t> CMachOFile::Rebases() const
{
    std::vector<std::uint64_t> addresses;
    std::uint64_t address = 0;
    const auto addPointers = [&](std::uint64_t inCount, std::uint64_t inSkip = 0)
    {
        for (; inCount > 0; --inCount)
        {
            addresses.push_back(address);
            address += kPointerSize + inSkip;
        }
    };
    CByteReader reader(Bytes(mRebases));
    while (!reader.AtEnd())
    {
        const auto byte = reader.Read<std::uint8_t>();
        const std::uint8_t immediate = byte & macho::kImmediateMask;
        switch (byte & macho::kOperationMask)
        {
        case macho::kRebaseDone: return addresses;
        case macho::kRebaseSetType:
            if (immediate != macho::kPointerFixup)
                throw CMachOError(mPath + ": a rebase that is no pointer");
            break;
        case macho::kRebaseSetSegmentAndOffset:
            address = SegmentAddress(immediate) + reader.ReadUleb();
            break;
        case macho::kRebaseAddAddress: address += reader.ReadUleb(); break;
        case macho::kRebaseAddAddressScaled: address += immediate * kPointerSize; break;
        case macho::kRebaseTimes: addPointers(immediate); break;
        case macho::kRebaseTimesUleb: addPointers(reader.ReadUleb()); break;
        case macho::kRebaseAndAddAddress: addPointers(1, reader.ReadUleb()); break;
        case macho::kRebaseTimesSkipping:
        {
            const std::uint64_t count = reader.ReadUleb();
            addPointers(count, reader.ReadUleb());
            break;
        }
        default: throw CMachOError(mPath + ": unexpected rebase operation");
        }
    }
    return addresses;
}

std::vector<SMachOBinding> CMachOFile::Bindings() const
{
    std::vector<SMachOBinding> bindings;
    ReadBindings(mBindings, EBindKind::kRegular, bindings);
    ReadBindings(mCoalescedBindings, EBindKind::kCoalesced, bindings); // after the others: they win
    ReadBindings(mLazyBindings, EBindKind::kLazy, bindings);
    return bindings;
}

void CMachOFile::ReadBindings(const SRange& inRange, EBindKind inKind,
                              std::vector<SMachOBinding>& outBindings) const
{
    SMachOBinding next;
    next.mIsCoalesced = inKind == EBindKind::kCoalesced;
    const auto addBindings = [&](std::uint64_t inCount, std::uint64_t inSkip = 0)
    {
        for (; inCount > 0; --inCount)
        {
            outBindings.push_back(next);
            next.mAddress += kPointerSize + inSkip;
        }
    };
    CByteReader reader(Bytes(inRange));
    while (!reader.AtEnd())
    {
        const auto byte = reader.Read<std::uint8_t>();
        const std::uint8_t immediate = byte & macho::kImmediateMask;
        switch (byte & macho::kOperationMask)
        {
        case macho::kBindDone:
            if (inKind != EBindKind::kLazy) // there it stands behind each entry
                return;
            break;
        case macho::kBindSetOrdinal: next.mLibraryOrdinal = immediate; break;
        case macho::kBindSetOrdinalUleb:
            next.mLibraryOrdinal = static_cast<std::int64_t>(reader.ReadUleb());
            break;
        case macho::kBindSetSpecialOrdinal: next.mLibraryOrdinal = SpecialOrdinal(immediate); break;
        case macho::kBindSetSymbol:
            next.mSymbol = reader.ReadText();
            next.mMayBeMissing = (immediate & macho::kWeakImportFlag) != 0;
            break;
        case macho::kBindSetType:
            if (immediate != macho::kPointerFixup)
                throw CMachOError(mPath + ": a binding that is no pointer");
            break;
        case macho::kBindSetAddend: next.mAddend = reader.ReadSleb(); break;
        case macho::kBindSetSegmentAndOffset:
            next.mAddress = SegmentAddress(immediate) + reader.ReadUleb();
            break;
        case macho::kBindAddAddress: next.mAddress += reader.ReadUleb(); break; // wraps where it goes back
        case macho::kBind: addBindings(1); break;
        case macho::kBindAndAddAddress: addBindings(1, reader.ReadUleb()); break;
        case macho::kBindAndAddAddressScaled: addBindings(1, immediate * kPointerSize); break;
        case macho::kBindTimesSkipping:
        {
            const std::uint64_t count = reader.ReadUleb();
            addBindings(count, reader.ReadUleb());
            break;
        }
        default: throw CMachOError(mPath + ": unexpected binding operation");
        }
    }
}
