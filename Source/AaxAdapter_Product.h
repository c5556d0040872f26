#pragma once
#include "Source/plugins/ProductOptions.h"

#include <cstdint>
#include <span>
#include <vector>

class AAX_IEffectGUI;
class AAX_IEffectParameters;
class CVst2Plugin;
struct SComponentChoice;

/**
 * What makes a module one maker's product, beside the options of ProductOptions.h. A product's generated
 * source defines these; the values are arguments of `add_aax_adapter`.
 */

/** Identifies the effect towards hosts: a reverse-domain name. */
extern const char* const kEffectID_AaxAdapter;

/** Identifies the maker: a four-character code, first character most significant. */
extern const std::uint32_t kManufacturerID;

/** What a host calls for a block of some instances: their records, up to the end. */
using RenderCallback = void (*)(void* const inBegin[], const void* inEnd);

/** The one that the product registers with its component: one of the two below. */
RenderCallback ProductRenderCallback() noexcept;

/** Renders, and nothing else. */
RenderCallback PlainRenderCallback() noexcept;
/** Also counts what should not be called meanwhile. In the library `render_guard`, for a beta. */
RenderCallback GuardedRenderCallback() noexcept;

/** What the description registers for making the objects of an instance, which start with no references, and
 * what it asks for itself. */
struct SInstanceFactories
{
    AAX_IEffectParameters* (*mMakeParameters)();
    AAX_IEffectGUI* (*mMakeEditor)();
    /** Names an output by its first channel, counted from 0, and their number; null: as its port. */
    void (*mNameOutput)(const CVst2Plugin& inPlugin, long inFirstChannel, long inChannels,
                        std::span<char> outName);
    /** The components to describe, at least one, each with an identifier of its own; null: one for the
     * plug-in's own main stems. */
    std::vector<SComponentChoice> (*mListComponents)(CVst2Plugin& inPlugin);
};

/** Those that the product registers: one of the two below. */
SInstanceFactories ProductInstanceFactories() noexcept;

SInstanceFactories PlainInstanceFactories() noexcept;
/** Of instances with features. In the library `product_features`. */
SInstanceFactories FeaturedInstanceFactories() noexcept;
