#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <array>
#include <cstdint>

/** How many auxiliary output stems one instrument component can have. */
inline constexpr std::int32_t kMaxAuxOutputStems = 32;
/** How many local MIDI input nodes one instrument component can have beside the first. */
inline constexpr std::int32_t kMaxAdditionalMIDINodes = 15;

/**
 * Describes one instrument component to `AAX_CInstrumentParameters::StaticDescribe`.
 *
 * All texts and tables are the caller's and must outlive the description.
 *
 * What no module sets: meters, additional input nodes and property 151. Nobody reads
 * `mTransportMIDINodeName`: the transport node is always "Transport".
 */
struct AAX_SInstrumentSetupInfo
{
    static constexpr AAX_CTypeID kNoIdentity = AAX_FourCharCode("none");

    bool mNeedsGlobalMIDI = false;
    const char* mGlobalMIDINodeName = "GlobalMIDI";
    std::uint32_t mGlobalMIDIEventMask = 0xFFFF;

    bool mNeedsInputMIDI = false;
    const char* mInputMIDINodeName = "InputMIDI";
    std::uint32_t mInputMIDIChannelMask = 0xFFFF;
    std::int32_t mNumAdditionalInputMIDINodes = 0; // 0 to kMaxAdditionalMIDINodes

    bool mNeedsTransport = false;
    const char* mTransportMIDINodeName = "Transport";
    const char* mOutputMIDINodeName = "OutputMIDI";

    std::int32_t mNumMeters = 0;
    const AAX_CTypeID* mMeterIDs = nullptr;

    std::int32_t mNumAuxOutputStems = 0; // at most kMaxAuxOutputStems
    std::array<const char*, kMaxAuxOutputStems> mAuxOutputStemNames{};
    std::array<std::int32_t, kMaxAuxOutputStems> mAuxOutputStemFormats = FilledWithMono();

    std::int32_t mInputStemFormat = AAX_eStemFormat_Mono;
    std::int32_t mOutputStemFormat = AAX_eStemFormat_Mono;
    bool mUseProperty151 = false;
    bool mCanBypass = true;
    bool mNeedsOutputMIDI = false;
    AAX_CTypeID mManufacturerID = kNoIdentity;
    AAX_CTypeID mProductID = kNoIdentity;
    AAX_CTypeID mPluginID = kNoIdentity;

private:
    static constexpr std::array<std::int32_t, kMaxAuxOutputStems> FilledWithMono()
    {
        std::array<std::int32_t, kMaxAuxOutputStems> formats{};
        formats.fill(AAX_eStemFormat_Mono);
        return formats;
    }
};
