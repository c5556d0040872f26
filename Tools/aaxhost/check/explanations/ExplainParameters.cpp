#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> ParameterExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"parameters.list",
         "Asks for the number of parameters and the identifier of each: 1 to 31 characters, none twice, each "
         "of which leads back to its parameter.",
         "Automation and control surfaces are stored by identifier.",
         "The module makes the identifiers from the plug-in's indexes. It fails where numParams changes "
         "while the instance is made: set it in the entry function once and for all."},
        {"parameters.names",
         "Looks for parameters without a name and for two of one name. Both are warnings.",
         "In a list of automation lanes two of the same name cannot be told apart.",
         "Answer effGetParamName for every index below numParams. Names that were cut to the 8 characters of "
         "the interface are often the same: the module takes up to 255, so put what differs first or write "
         "the whole name. Leave no blank ones for reserved indexes."},
        {"parameters.short-names",
         "Asks for each parameter's name for displays of 1, 4, 8, 16 and 31 characters and looks whether one "
         "is empty.",
         "Control surfaces have 4 to 8 characters a knob. An empty one is a knob that nobody dares to turn.",
         "The module cuts the name of effGetParamName, so put what tells a knob from its neighbours first: "
         "\"Cutoff 2\" and not \"Filter section 2\". With the feature PARAMETER_PROPERTIES it uses the "
         "shortLabel of effGetParameterProperties instead."},
        {"parameters.defaults",
         "Looks whether default and value of each parameter are numbers from 0 to 1 and, in a new instance, "
         "the same within 0.00001.",
         "A host offers \"back to default\", and draws automation from 0 to 1.",
         "getParameter has to answer from 0 to 1 directly after effOpen. Uninitialised members, values in "
         "hertz or decibels, and a value that the plug-in changes between two calls are the usual causes; "
         "load the start program before effOpen returns."},
        {"parameters.at-rest",
         "Renders half a second of silence and compares each parameter with its start, within 0.00001.",
         "A parameter that moves by itself marks the song as changed and, while automation is written, "
         "writes itself into it.",
         "The plug-in loads or chooses a program late, in its first processReplacing, in effIdle or in a "
         "thread that effOpen has started, or it uses a parameter as a meter. Settle all values before "
         "effOpen returns, and show meters in the editor only."},
        {"parameters.steps",
         "Asks for each parameter's number of steps. One that cannot be told fails; a single step is a "
         "warning.",
         "Hosts and surfaces divide a knob's way by it.",
         "The number is the module's, also with the feature PARAMETER_PROPERTIES, which passes on from 2 "
         "steps only. What shows here is an effGetParameterProperties that crashes or throws while the "
         "instance is made: fill the record at ptr and return 1, or return 0."},
        {"parameters.set-and-get",
         "Sets 8 to 4,096 parameters, by the strictness, to 0, 0.25, 0.5 and 1 and reads them back: a number "
         "outside 0 to 1 fails; a 0 or a 1 that comes back more than 0.00001 off is a warning.",
         "Automation that reaches for the end of a range and does not get there sounds other than it looks.",
         "setParameter and getParameter have to be each other's inverse. Keep the value that came and derive "
         "the plug-in's own unit from it, instead of converting to that unit and back; do not stop at 0.99 "
         "or begin at 0.01."},
        {"parameters.text-round-trip",
         "Asks for the text of 0, 0.25, 0.5 and 1 of each parameter, gives the text back as if typed, and "
         "asks for the text of what came of it.",
         "A musician types a value into a field. What is shown afterwards should be what was typed.",
         "Without the feature VALUE_TEXTS these texts are plain numbers of the module's. With it they are "
         "the plug-in's from effGetParamDisplay: write one text for one value, the same each time, and "
         "different ones for values that differ to the ear."},
        {"parameters.texts",
         "Asks for each parameter's present text for 4, 8 and 31 characters: empty ones and control "
         "characters fail.",
         "The text stands on control surfaces, which show control characters as garbage.",
         "Without the feature VALUE_TEXTS the text is a number of the module's. With it, it comes from "
         "effGetParamDisplay and effGetParamLabel, control characters made blanks; what remains to go wrong "
         "is a crash: end both texts with a zero and write no more than 255 characters."},
        {"parameters.unknown",
         "Reads and sets the parameters \"nobody\", \"99999\", \"-0001\", \"00000x\" and one of a long name. "
         "Reading has to fail, and no real parameter may move by more than 0.00001.",
         "Songs made with another version, and surfaces with old mappings, ask for parameters that are gone.",
         "The module refuses identifiers that name no parameter. If one of yours moves, the plug-in moves it "
         "at that time by itself: see parameters.at-rest."},
        {"parameters.out-of-range",
         "Sets 8 to 4,096 parameters, by the strictness, to -1, 2, 1e30 and -1e30, reads each back, which "
         "has to give 0 to 1, and plays 0.05 seconds at the end.",
         "Relative knobs and damaged automation bring such values.",
         "Clamp in setParameter, before the value is converted to an index, a time or a gain; a table that "
         "is read beyond its end crashes. getParameter should answer with the clamped value."},
        {"parameters.sweep",
         "Moves 8 to 4,096 parameters, by the strictness, from 0 to 1 in 11 steps, one after the other, with "
         "a block of 256 frames of noise and a held note after each step, and looks for broken samples.",
         "A fader that is drawn through its range must not blow up the mix.",
         "A filter whose coefficients are 0/0 at an end, a delay of length 0 and a logarithm of 0 are the "
         "usual causes. Limit what setParameter derives, and clear or smooth a filter's memory where its "
         "coefficients jump."},
        {"parameters.extremes",
         "Sets every parameter to 0, then every one to 1, plays 0.2 seconds of the test material each, and "
         "looks for broken samples.",
         "Presets that somebody makes by turning all up are the first thing that many try.",
         "Each value alone may be sound and their product not: a feedback of 1 with a gain, resonance at its "
         "top with the cutoff at half the rate. Limit the loop's gain, and the cutoff below half the sample "
         "rate."},
        {"parameters.random",
         "Sets all parameters to random values 5 to 200 times, by the strictness, plays 0.04 seconds of the "
         "test material after each, and looks for broken samples.",
         "\"Randomise\" buttons, morphing and many hands on a surface give combinations that nobody has "
         "tried.",
         "The sentence names the round: --seed and --only repeat it. What a broken state leaves in filters "
         "and delay lines stays, so look at the values of that round, and reset a filter whose memory is not "
         "finite."},
        {"parameters.sweep-threads",
         "Sets all parameters to random values 20 to 2,000 times at least, by the strictness, while another "
         "thread renders 50 to 2,000 blocks of 128 frames, and looks for broken samples.",
         "Automation and the mouse arrive on the main thread while the audio thread renders: always, in "
         "every host.",
         "setParameter comes in the midst of processReplacing. It must not resize buffers or write half of a "
         "filter's coefficients that processReplacing reads. Store the value in an atomic and derive the "
         "rest at the start of the next block."},
    };
    return kTexts;
}
