#pragma once
#include "Examples/common/SParameterInfo.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/** A program as the plug-in ships it: a name and one value per parameter, in the parameter's unit. */
struct SFactoryProgram
{
    const char* mName;
    std::span<const double> mValues;
};

/**
 * The programs of a plug-in: their names, their parameter values (0 to 1), which one is current, and both
 * forms of the state chunk.
 *
 * Threads: Value may be called on any thread; everything else belongs to the main thread. A render call that
 * runs while a chunk is loaded may see some values of before and some of after.
 */
class CProgramBank
{
public:
    /** Numbered as the chunk opcodes number them. */
    enum EScope : std::uint32_t
    {
        kBank = 0,   // every program, and which one is current
        kProgram = 1 // the current program only
    };

    /** @param inOwner marks the chunks, so that another plug-in's are refused. The tables must outlive it. */
    CProgramBank(std::int32_t inOwner, std::span<const SParameterInfo> inParameters,
                 std::span<const SFactoryProgram> inPrograms);

    std::size_t ParameterCount() const noexcept { return mParameterCount; }
    std::size_t ProgramCount() const noexcept { return mNames.size(); }
    std::size_t Current() const noexcept { return mCurrent.load(std::memory_order_relaxed); }
    /** Does nothing when there is no such program. */
    void Select(std::size_t inProgram) noexcept;
    /** @return the current program's value of a parameter that exists. */
    float Value(std::size_t inParameter) const noexcept;
    /** Keeps the old value when the new one is NaN, and the nearer end when it is outside 0 to 1. */
    void SetValue(std::size_t inParameter, float inValue) noexcept;
    /** @return a terminated text, valid until the program gets another name. */
    const char* Name(std::size_t inProgram) const noexcept { return mNames[inProgram].data(); }
    void Rename(std::size_t inProgram, std::string_view inName) noexcept;

    std::vector<std::byte> Save(EScope inScope) const;
    /** @return false, and nothing has changed, unless the bytes are a whole chunk of this plug-in and scope.
     */
    bool Load(EScope inScope, std::span<const std::byte> inChunk);

private:
    static constexpr std::size_t kNameLength = 24;
    using ProgramName = std::array<char, kNameLength + 1>;

    std::size_t ProgramsIn(EScope inScope) const noexcept { return inScope == kBank ? ProgramCount() : 1; }

    std::uint32_t mOwner = 0;
    std::size_t mParameterCount = 0;
    std::vector<ProgramName> mNames;
    // Main thread writes, the render thread reads: one value per program and parameter, and the program.
    std::vector<std::atomic<float>> mValues;
    std::atomic<std::size_t> mCurrent = 0;
};
