#include "Libs/AAXLibrary/source/AAX_CChunkDataParser.h"
#include "Tools/fuzz/FuzzChunk.h"

#include <cstdlib>
#include <cstring>

// Whatever was read is written and read again: the second writing must equal the first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inData, std::size_t inSize)
{
    CFuzzChunk chunk({inData, inSize});
    AAX_CChunkDataParser parser;
    parser.LoadChunk(&chunk.Record());
    double number = 0.0;
    (void)parser.FindDouble("00000", &number); // found or not

    CFuzzChunk first(static_cast<std::size_t>(parser.GetChunkDataSize()));
    if (parser.GetChunkData(&first.Record()) != kAAX_Success)
        std::abort();
    AAX_CChunkDataParser again;
    again.LoadChunk(&first.Record());
    return 0;
}
