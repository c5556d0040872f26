#include "Tools/vst2probe/CategoryGuess.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>

namespace
{
/** What plug-ins answer to effGetPlugCategory. */
enum EKind : std::int32_t
{
    kSynth = 2,
    kSpatializer = 5,
    kRoomEffect = 6,
    kRestoration = 8,
    kGenerator = 11
};

struct SWord
{
    const char* mWord; // or a part of one, in lower case
    const char* mCategory;
};

/** The first that a name has decides: "reverb delay" is a reverb, "multiband compressor eq" dynamics. */
constexpr SWord kWords[] = {
    {"verb", "reverb"},
    {"plate", "reverb"},
    {"hall", "reverb"},
    {"delay", "delay"},
    {"echo", "delay"},
    {"denois", "noise-reduction"},
    {"noise reduc", "noise-reduction"},
    {"dither", "dither"},
    {"dyna", "dynamics"},
    {"limiter", "dynamics"},
    {"maxim", "dynamics"},
    {"expander", "dynamics"},
    {"gate", "dynamics"},
    {"comp", "dynamics"},
    {"equal", "eq"},
    {"eq", "eq"},
    {"filter", "eq"},
    {"pitch", "pitch"},
    {"tune", "pitch"},
    {"harmoniz", "pitch"},
    {"chorus", "modulation"},
    {"flang", "modulation"},
    {"phaser", "modulation"},
    {"tremolo", "modulation"},
    {"wah", "modulation"},
    {"distort", "harmonic"},
    {"overdrive", "harmonic"},
    {"tube", "harmonic"},
    {"saturat", "harmonic"},
    {"crush", "harmonic"},
    {"pan", "sound-field"},
    {"encoder", "sound-field"},
    {"decoder", "sound-field"},
};

bool HasWord(std::string_view inName, std::string_view inLowered)
{
    const auto isSame = [](char inByte, char inWord)
    { return std::tolower(static_cast<unsigned char>(inByte)) == inWord; };
    return std::search(inName.begin(), inName.end(), inLowered.begin(), inLowered.end(), isSame) !=
           inName.end();
}
} // namespace

std::string GuessCategory(const SPluginFacts& inFacts)
{
    if (inFacts.mKind == kSynth || inFacts.mKind == kGenerator || inFacts.IsInstrument())
        return "instrument";
    const auto word =
        std::ranges::find_if(kWords, [&](const SWord& row) { return HasWord(inFacts.mName, row.mWord); });
    if (word != std::end(kWords))
        return word->mCategory;
    switch (inFacts.mKind)
    {
    case kRoomEffect: return "reverb";
    case kSpatializer: return "sound-field";
    case kRestoration: return "noise-reduction";
    default: return {};
    }
}
