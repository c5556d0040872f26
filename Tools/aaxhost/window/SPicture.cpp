#include "Tools/aaxhost/window/SPicture.h"

#include "Tools/support/CWholeFile.h"

#include <fmt/format.h>
#include <png.h>

namespace
{
png_image EmptyImage()
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    return image;
}
} // namespace

COutcome<std::string> EncodePng(const SPicture& inPicture)
{
    png_image image = EmptyImage();
    image.width = static_cast<png_uint_32>(inPicture.mWidth);
    image.height = static_cast<png_uint_32>(inPicture.mHeight);
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = 0;
    if (png_image_write_to_memory(&image, nullptr, &size, 0, inPicture.mPixels.data(), 0, nullptr) == 0)
        return SProblem{image.message};
    std::string bytes(size, '\0');
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, inPicture.mPixels.data(), 0, nullptr) == 0)
        return SProblem{image.message};
    bytes.resize(size);
    return bytes;
}

COutcome<SDone> WritePng(const std::string& inPath, const SPicture& inPicture)
{
    const auto bytes = EncodePng(inPicture);
    if (!bytes)
        return SProblem{fmt::format("'{}' cannot be written: {}.", inPath, bytes.Problem().mSentence)};
    return WriteWholeFile(inPath, std::as_bytes(std::span(*bytes)));
}

COutcome<SPicture> ReadPng(const std::string& inPath)
{
    png_image image = EmptyImage();
    if (png_image_begin_read_from_file(&image, inPath.c_str()) == 0)
        return SProblem{fmt::format("'{}' cannot be read: {}.", inPath, image.message)};
    image.format = PNG_FORMAT_RGB;
    SPicture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    picture.mPixels.resize(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, picture.mPixels.data(), 0, nullptr) == 0)
        return SProblem{fmt::format("'{}' cannot be read: {}.", inPath, image.message)};
    return picture;
}
