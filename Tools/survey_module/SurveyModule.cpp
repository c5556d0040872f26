#include "Source/AaxAdapter_Product.h"
#include "Source/SourceVstPath.h"
#include "Source/plugins/ProductFeatures.h"

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <fstream>
#include <iterator>

/*
 * The product that `aaxhost survey` puts plug-ins into: its bundle says what a product's generated source
 * says otherwise. All of it is read when the module is loaded, and stays.
 */

namespace
{
namespace fs = std::filesystem;

std::ifstream OpenResource(const char* inName)
{
    std::array<char, kSourceVstPathSize> plugin{};
    CreateSourceVstPath(plugin.data());
    return std::ifstream(fs::path(plugin.data()).replace_filename(inName));
}

/** A line "KEYWORD value" of options.txt; 0 where there is none. */
std::int32_t OptionOfBundle(const std::string& inKeyword)
{
    std::ifstream file = OpenResource("options.txt");
    std::string keyword;
    std::int32_t value = 0;
    while (file >> keyword >> value)
        if (keyword == inKeyword)
            return value;
    return 0;
}

/** Those that features.txt names, one a line. */
SProductFeatures FeaturesOfBundle()
{
    std::array<bool, std::size(kProductFeatureNames)> features{};
    static_assert(sizeof features == sizeof(SProductFeatures)); // a bool each, in the order of the names
    std::ifstream file = OpenResource("features.txt");
    for (std::string line; std::getline(file, line);)
    {
        const auto* const name = std::ranges::find(kProductFeatureNames, line);
        if (name != std::end(kProductFeatureNames))
            features[static_cast<std::size_t>(name - kProductFeatureNames)] = true;
    }
    return std::bit_cast<SProductFeatures>(features);
}

bool HasFeatures()
{
    const auto features = std::bit_cast<std::array<bool, sizeof(SProductFeatures)>>(kProductFeatures);
    return std::ranges::find(features, true) != features.end();
}
} // namespace

const char* const kEffectID_AaxAdapter = "com.example.survey";
const std::uint32_t kManufacturerID = 0x53727679; // 'Srvy'
const std::int32_t kEntryHostVersion = OptionOfBundle("ENTRY_VERSION");
const bool kPortsFromCounts = OptionOfBundle("PORTS_FROM_COUNTS") != 0;
const bool kMidiInput = OptionOfBundle("MIDI_INPUT") != 0;
const std::int32_t kCategory = 0;
const std::int32_t kStems = 0;
const SProductFeatures kProductFeatures = FeaturesOfBundle();

RenderCallback ProductRenderCallback() noexcept { return PlainRenderCallback(); }

SInstanceFactories ProductInstanceFactories() noexcept
{
    return HasFeatures() ? FeaturedInstanceFactories() : PlainInstanceFactories();
}
