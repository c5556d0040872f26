#pragma once
#include "Tests/support/CTestFolder.h"

#include <filesystem>

/** The product that takes every option a product can set, for plug-ins that need them. */
inline const std::filesystem::path kOptionsModule = TEST_OPTIONS_MODULE;
/** The product that sets none. */
inline const std::filesystem::path kPlainModule = TEST_PLAIN_MODULE;
/** The product that has every feature, and those options as well. */
inline const std::filesystem::path kAllFeaturesModule = FEATURE_ALL_MODULE;
inline const std::filesystem::path kSynthPlugin = EXAMPLE_SYNTH;
inline const std::filesystem::path kDelayPlugin = EXAMPLE_DELAY;

/** The host version that kOptionsModule answers inside a plug-in's entry. */
inline constexpr int kOptionsEntryVersion = 2400;

/** A plug-in of Debian's packages by the name before "-vst.so"; empty where it is not installed. */
std::filesystem::path InstalledPlugin(const char* inName);

/** A copy of a built bundle with another plug-in in it, in a folder of its own that goes with this object. */
class CModuleBundle
{
public:
    /** @param inPlugin copied to source.vst; empty: the bundle gets none. */
    CModuleBundle(const std::filesystem::path& inModuleFile, const std::filesystem::path& inPlugin);

    const std::filesystem::path& Path() const { return mBundle; }
    std::filesystem::path SourceVst() const { return mBundle / "Contents" / "Resources" / "source.vst"; }

private:
    CTestFolder mFolder;
    std::filesystem::path mBundle;
};
