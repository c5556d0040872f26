#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> AutomationExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"automation.registered",
         "Looks whether the host's automation knows every parameter that the module calls automatable.",
         "What is not registered can be drawn in a lane and moves nothing.",
         "The module registers them when the instance starts. Let numParams be complete before effOpen; with "
         "the feature PARAMETER_PROPERTIES answer effCanBeAutomated the same way each time."},
        {"automation.accepted",
         "Updates each parameter to 0, 0.33, 1 and 0.5, has the module send its coefficients after each, and "
         "plays 0.05 seconds.",
         "It is how a host plays automation back; a refusal leaves the parameter where it was.",
         "The module refuses only what went wrong inside: an exception out of setParameter or getParameter, "
         "as a rule for an index or a value at the end of the range. Catch it in the plug-in."},
        {"automation.settles",
         "Sets each parameter to 0.75 and answers what the module asks of the host, in up to 20 cycles. It "
         "fails where something still waits after them.",
         "An exchange that never ends fills the undo list, keeps the song marked as changed and the "
         "processor busy.",
         "Do not call audioMasterAutomate from setParameter: it is for what the musician does in the editor. "
         "A plug-in that rounds the value and reports the rounded one, which it rounds again, never ends."},
        {"automation.answers",
         "Plays 20 steps of random automation on every parameter, one and five in a cycle, with a host that "
         "answers at once, late, or only the last request. In 20 further cycles the module may ask for at "
         "most as many values as there are parameters.",
         "Hosts differ in when they answer. If the answers are taken for new movements, a knob trembles "
         "between two values for ever.",
         "setParameter that calls audioMasterAutomate, or audioMasterUpdateDisplay for each value, is the "
         "cause. Report only what was moved in the editor, and compare with the present value before "
         "reporting."},
        {"automation.before-coefficients",
         "Sets the parameters of a fresh instance to 0.9 or 0.1 before the host has asked for the first "
         "coefficients, and those of another after its first block. Both must have the same values, also 64 "
         "frames later.",
         "Hosts send automation as soon as the instance is there. If the plug-in starts once more, the song "
         "begins with the wrong sound.",
         "Loading a program or the defaults in effStartProcess, in the first processReplacing or in a thread "
         "that effOpen has started overwrites what setParameter brought. Do it in effOpen itself, and there "
         "only."},
        {"automation.no-touch-left",
         "Moves each parameter to 0.3, plays 0.1 seconds, answers the host's part, and counts touches and "
         "releases: as many of both, and no parameter touched.",
         "A parameter that stays touched is held by a ghost: its automation never plays again.",
         "Without the feature GESTURES the module touches and releases around each value. With it, an "
         "audioMasterBeginEdit touches until the audioMasterEndEdit of the same index: call both, in "
         "setParameter too, or better neither there. Editors end their edits when the mouse is let go "
         "outside and when they close."},
        {"automation.dense",
         "Moves one parameter after the other along a sine in front of each of 200 to 5,000 blocks of 16 "
         "frames, by the strictness, and looks for broken samples and crashes.",
         "Hosts cut blocks where automation changes, so setParameter may come thousands of times a second.",
         "Make setParameter cheap: no allocation, file, FFT plan or rebuilt table in it, but a mark that "
         "processReplacing looks at. Smooth coefficients, since each block of 16 frames begins with a jump."},
        {"automation.audible",
         "Plays 0.2 seconds of the test material, once as it starts and up to three times with every "
         "parameter at 0.9, 0.1 and 0.6. A warning where all sound the same within 0.0001 of the louder one.",
         "Automation that is drawn and not heard is the worst kind of surprise.",
         "A plug-in whose parameters need something else first (a sample, a note in range, a side chain) is "
         "warned of, too. Otherwise look whether processReplacing uses the values of setParameter, or a copy "
         "that only the editor brings up to date."},
        {"automation.repeatable",
         "Moves the first parameter from 0 to 1 over 40 blocks of 128 frames in two instances, with noise "
         "and a note. A warning where their sounds differ by more than 0.0001 of the louder one.",
         "A bounce should be what was heard.",
         "Free-running oscillators, random start phases and uninitialised memory are the causes. Start "
         "phases and random generators from a fixed value in effMainsChanged, unless it is meant."},
        {"automation.stopped",
         "Stops the transport, sets each parameter to 0.8 with a block of 64 frames after it, and looks for "
         "broken samples and crashes.",
         "Musicians set up their sounds while the song stands.",
         "Plug-ins that divide by the tempo, or wait in setParameter for playback, fail here. VstTimeInfo "
         "without the playing flag is a usual case, not an error."},
    };
    return kTexts;
}
