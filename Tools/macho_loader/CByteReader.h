#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string>

/** A file that is no Mach-O image for this machine, or one that the loader can't serve. */
class CMachOError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/** Reads little-endian data front to back; throws CMachOError where the data ends too early. */
class CByteReader
{
public:
    explicit CByteReader(std::span<const std::uint8_t> inBytes, std::size_t inOffset = 0) : mBytes(inBytes)
    {
        Seek(inOffset);
    }

    std::size_t Offset() const { return mOffset; }
    const std::uint8_t* Position() const { return mBytes.data() + mOffset; }
    bool AtEnd() const { return mOffset == mBytes.size(); }
    void Seek(std::size_t inOffset)
    {
        if (inOffset > mBytes.size())
            throw CMachOError("data ends too early");
        mOffset = inOffset;
    }
    std::span<const std::uint8_t> ReadBytes(std::size_t inCount)
    {
        const std::size_t start = mOffset;
        if (inCount > mBytes.size() - start)
            throw CMachOError("data ends too early");
        mOffset += inCount;
        return mBytes.subspan(start, inCount);
    }
    void Skip(std::size_t inCount) { (void)ReadBytes(inCount); } // the bounds check counts
    template <class Number>
    Number Read()
    {
        Number value{};
        std::memcpy(&value, ReadBytes(sizeof(value)).data(), sizeof(value));
        return value;
    }

    /** Seven bits a byte, the lowest first. */
    std::uint64_t ReadUleb();
    std::int64_t ReadSleb();
    /** A text that ends with a NUL. */
    std::string ReadText();
    /** A text in a field of that size, ended by a NUL where it is shorter. */
    std::string ReadField(std::size_t inSize);

private:
    std::span<const std::uint8_t> mBytes;
    std::size_t mOffset = 0;
};

/** @return the number at an offset. */
template <class Number>
Number ReadAt(std::span<const std::uint8_t> inBytes, std::size_t inOffset)
{
    return CByteReader(inBytes, inOffset).Read<Number>();
}
