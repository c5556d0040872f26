#pragma once
#include "Tools/support/COutcome.h"

#include <cstdint>
#include <string>
#include <vector>

/** An image: three bytes a pixel, red first, row by row from the top, without gaps. */
struct SPicture
{
    int mWidth = 0;
    int mHeight = 0;
    std::vector<std::uint8_t> mPixels;
};

/** The bytes of a PNG file. */
COutcome<std::string> EncodePng(const SPicture& inPicture);
/** Replaces the file. */
COutcome<SDone> WritePng(const std::string& inPath, const SPicture& inPicture);
COutcome<SPicture> ReadPng(const std::string& inPath);
