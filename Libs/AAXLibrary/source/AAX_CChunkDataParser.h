#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/**
 * Turns a list of named, typed values into the data of a chunk and back.
 *
 * The data is the marker 01 01 01 01 and then, for every value, a key (tag letter, '_', name, NUL) and the
 * value, most significant byte first, each padded with zero bytes to a multiple of four.
 *
 * A search starts behind the entry found last and wraps, so values read in the order of the data are found at
 * once; the first search that is not makes an index, so that many searches take time in proportion to the
 * list. A name that was added twice is stored twice.
 *
 * Threads: one at a time.
 */
class AAX_CChunkDataParser
{
public:
    AAX_CChunkDataParser() = default;
    AAX_CChunkDataParser(const AAX_CChunkDataParser&) = default;
    AAX_CChunkDataParser& operator=(const AAX_CChunkDataParser&) = default;
    virtual ~AAX_CChunkDataParser() = default;

    void AddFloat(const char* inName, float inValue);
    void AddDouble(const char* inName, double inValue);
    void AddInt32(const char* inName, std::int32_t inValue);
    void AddInt16(const char* inName, std::int16_t inValue);
    void AddString(const char* inName, AAX_CString inValue); // up to its first NUL

    /** @return false, with nothing stored, when no entry has the name or the one found has another type. */
    bool FindFloat(const char* inName, float* outValue);
    bool FindDouble(const char* inName, double* outValue);
    bool FindInt32(const char* inName, std::int32_t* outValue);
    bool FindInt16(const char* inName, std::int16_t* outValue);
    bool FindString(const char* inName, AAX_CString* outValue);
    bool ReplaceDouble(const char* inName, double inValue);
    /** @return the entry's index, -1 when there is none. */
    std::int32_t FindName(const AAX_CString& inName);

    std::int32_t GetChunkDataSize() const; // bytes
    /**
     * Writes the size field and the data; all other fields are the caller's.
     * @param outChunk   has room for GetChunkDataSize() bytes of data.
     */
    [[nodiscard]] AAX_Result GetChunkData(AAX_SPlugInChunk* outChunk) const;
    /**
     * Replaces the list, in time and memory in proportion to the chunk's size. Data that is no list of values
     * gives an empty one; a last entry that is cut short is dropped, and of entries without name and value
     * that follow each other one is kept. No byte behind the chunk's size is read.
     */
    void LoadChunk(const AAX_SPlugInChunk* inChunk);

    void Clear(); // gives the memory back
    bool IsEmpty() const;

protected:
    struct DataValue
    {
        std::int32_t mDataType = 0; // 0: carries no value
        AAX_CString mDataName;
        std::int64_t mIntValue = 0; // a real number as its bit pattern, an integer sign-extended
        AAX_CString mStringValue;
    };

    std::int32_t mLastFoundIndex = -1;
    std::int32_t mChunkVersion = -1; // of the chunk loaded last
    std::vector<DataValue> mDataValues;

private:
    /** An entry as it lies in a chunk, still in the chunk's memory. */
    struct SStoredEntry
    {
        std::int32_t mDataType = 0;
        std::string_view mName;
        std::string_view mValue; // a text, or the bytes of a number
        std::size_t mEnd = 0;    // the position behind the entry
    };
    /** Positions in mDataValues by the hash of the entry's name; those of a bucket ascend. */
    struct SNameIndex
    {
        std::vector<std::uint32_t> mBucketStarts; // one more than there are buckets
        std::vector<std::uint32_t> mPositions;    // as many as there were entries
    };

    static std::size_t EntrySize(const DataValue& inEntry);
    /** @return the position behind the entry. */
    static char* WriteEntry(const DataValue& inEntry, char* outData);
    /** @return none when the data ends inside of the entry. */
    static std::optional<SStoredEntry> ReadEntry(std::string_view inData, std::size_t inPosition);
    /** Calls `inVisit` with each entry; of entries without name and value that follow each other with one. */
    template <class Visit>
    static void VisitEntries(std::string_view inData, Visit inVisit);

    void AddNumber(const char* inName, std::int32_t inType, std::int64_t inBits);
    /** @return null when no entry has the name or the one found has another type. */
    DataValue* FindValue(const char* inName, std::int32_t inType);
    void BuildNameIndex();

    SNameIndex mNameIndex; // of the list as long as it has as many entries; made by a search
};
