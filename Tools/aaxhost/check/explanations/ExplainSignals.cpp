#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> SignalExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"rendering.finite",
         "Plays a second of the test material and fails at the first sample that is infinite or not a "
         "number.",
         "One such sample silences the whole mix behind it, or sends it to the speakers at full level.",
         "Members that setParameter or effMainsChanged have not yet initialised are the usual cause with "
         "start settings, then 0/0 in a meter or a normalisation of silence. Local variables that are read "
         "before they are written show too: before each block the unused stack is filled with what is not a "
         "number. The sentence says output and frame: break there."},
        {"rendering.silence",
         "Renders a second of silence, then 1 to 10 more by the strictness: a peak above -60 dB in these is "
         "a warning.",
         "A plug-in that hums with no input adds up over forty tracks.",
         "Noise of a modelled device and drones are meant; give them a switch. If not meant, look for a "
         "filter that rings by itself, an offset, or a buffer that is not cleared in effMainsChanged."},
        {"rendering.returns-to-silence",
         "Feeds noise at -6 dB for half a second, then silence for up to 10 to 60 seconds, by the "
         "strictness. A warning where no second falls below -80 dB, 60 dB below the sound, or twice what it "
         "hummed before.",
         "Bounces add a tail until it is silent; one that never ends makes endless files and keeps the "
         "processor busy.",
         "A feedback of 1 or more in its start program, or denormal numbers that go round, are the causes. "
         "Keep the loop's gain below 1, and clear what is below -120 dB."},
        {"rendering.full-scale",
         "Feeds noise, a sine of 997 Hz, a square of 480 Hz and a constant, each at full scale for 0.3 "
         "seconds, and looks for broken samples.",
         "Modern mixes are at full scale everywhere.",
         "The constant finds integrators without a limit, the square filters that overshoot. Look for asin, "
         "acos, sqrt and log of what may be beyond 1 or below 0, and for tables with one entry too few at "
         "the top."},
        {"rendering.beyond-full-scale",
         "Feeds noise 40 dB above full scale for 0.3 seconds and looks for broken samples.",
         "Tracks of 32-bit float go over without clipping; a wrong fader in front of the plug-in is soon "
         "that hot.",
         "Waveshapers that use the sample as an index, polynomials of high order and exp overflow here. "
         "Clamp the input of the shaper, not the plug-in's."},
        {"rendering.denormals",
         "Feeds noise at 1e-39, below the smallest normal number, for 0.3 seconds and looks for broken "
         "samples.",
         "Every fade-out ends in such numbers.",
         "Dividing by a level that is not quite 0 gives infinity: compare with a floor such as 1e-9, not "
         "with 0. That the plug-in becomes slow shows in rendering.keeps-up at best: set flush-to-zero in "
         "processReplacing."},
        {"rendering.infinities",
         "Feeds 64 frames of infinity, then noise for a second. A warning where the half second after it has "
         "a broken sample.",
         "When another plug-in in the chain fails once, this one should not be silent until the song is "
         "opened again.",
         "Filters and delay lines keep what came in. Test each block's output with isfinite, and clear all "
         "memory where one is not."},
        {"rendering.not-a-number",
         "Feeds 64 frames that are not a number, then noise for a second. A warning where the half second "
         "after it has a broken sample.",
         "A not-a-number spreads by every sum and goes through min and max in surprising ways.",
         "Comparisons with it are false, so a clamp written as \"if x above 1\" lets it pass; write \"if not "
         "x within -1 to 1\". Clear envelopes and filters that hold one."},
        {"rendering.level",
         "Plays a second of the test material, which is at -12 dB: a peak above +18 dB is a warning.",
         "Thirty decibels more than what went in hurt ears and speakers.",
         "Start with a program at unity gain. Look for a resonance at its top, voices that add up without a "
         "scale, and old code that adds to the output instead of writing it."},
        {"rendering.one-channel",
         "Feeds noise at -6 dB into the first input only, then the second only, for 0.2 seconds each, looks "
         "for broken samples, and compares each output's peak with that of the plug-in called directly: one "
         "above -60 dB that is more than 18 dB off fails.",
         "A stereo track with one silent side is usual: a hard-panned guitar.",
         "Balance, correlation and width meters divide by the level of a side. Compare with a floor before "
         "dividing."},
        {"rendering.latency",
         "Sends an impulse at -6 dB through and compares its first sample above -60 dB of its peak, and the "
         "peak, with the latency that the host is told, within one sample. A reported latency that neither "
         "fits fails; an impulse that comes whole and late without one is a warning.",
         "Hosts move the other tracks by the reported number. A wrong one is a flam on every beat.",
         "initialDelay of AEffect is the delay in samples at the present rate, known when effOpen returns. "
         "Look for one that is given at 44.1 kHz, in frames of an FFT, or for a look-ahead that is switched "
         "off. An echo must not be reported."},
        {"rendering.late-latency",
         "Opens the plug-in directly, plays 0.3 seconds and looks whether initialDelay has changed; if so, "
         "the module has to tell its host the new one. A negative one, or more than 10 seconds, passes.",
         "The track is late by the difference, and nothing shows why.",
         "Set initialDelay before effOpen or effMainsChanged returns. Where the latency depends on a "
         "setting, call audioMasterIOChanged, and build the product with the feature LATENCY, which tells "
         "the host."},
    };
    return kTexts;
}
