#pragma once
#include <cstddef>
#include <span>

/** One function that a loaded image takes from another one. */
struct SImportPatch
{
    const char* mName =
        nullptr; // as the linker has it, without the underscore that some systems put in front
    void* mReplacement = nullptr; // what the image calls from now on
    void* mOriginal = nullptr;    // what it called until now; null where the image does not import it
};

/**
 * Has a loaded program or library call other functions in place of ones that it imports; what other images
 * call stays. All of it is for one thread at a time, while others may be in the image's code.
 */

/**
 * Fills in the originals.
 * @param inCodeAddress any address of the image's code or data.
 * @return false when the address belongs to no image, or its imports cannot be found.
 */
bool FindImports(const void* inCodeAddress, std::span<SImportPatch> ioPatches) noexcept;
/** Replaces what was found: a replacement may be called at once. */
void ReplaceImports(const void* inCodeAddress, std::span<const SImportPatch> inPatches) noexcept;
/** Takes that back where it is still in effect. An image that is not loaded any more is left alone. */
void RestoreImports(const void* inCodeAddress, std::span<const SImportPatch> inPatches) noexcept;
