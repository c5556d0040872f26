#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> RobustnessExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"robustness.host-refuses",
         "Opens the module once for each kind of call that it makes during the description, with a host that "
         "refuses the first such call, and counts the module's objects then and afterwards.",
         "Old hosts do not know new calls; the scan has to end all the same.",
         "The calls are the module's. For the plug-in it means that its library is loaded and unloaded again "
         "and again, without effOpen: end in effClose what the entry function began."},
        {"robustness.missing-interfaces",
         "Makes an instance with a host that has no controller, no automation or no transport, and renders "
         "256 frames where it was given one.",
         "Small hosts, and the previews of large ones, lack parts.",
         "Without a controller the sample rate is not known, and effSetSampleRate comes with 0: keep a rate "
         "of your own then, instead of dividing by 0 in effOpen or effMainsChanged."},
        {"robustness.null-arguments",
         "Calls eleven operations of the parameters with a null pointer for the answer or for the "
         "identifier, \"00000\" being the first parameter. Each has to come back.",
         "A host's mistake should be an error code and not the end of the session.",
         "The module answers most by itself; a crash here is mostly one that the plug-in has in its start, "
         "so look at life-cycle.creates first."},
        {"robustness.missing-nodes",
         "Renders 0.1 seconds of silence with null in place of the transport and the MIDI nodes, and looks "
         "for broken samples.",
         "Hosts leave them out while they preview or render offline.",
         "The plug-in gets no effProcessEvents, or an empty one, and a time record that stands still. It has "
         "to take both for an ordinary silence."},
        {"robustness.hidden-streams",
         "Renders 0.1 seconds of silence with MIDI nodes that are there and give no stream, and looks for "
         "broken samples.",
         "A track that is not armed may have a node without a buffer.",
         "To the plug-in this is a block without events: do not wait for the first effProcessEvents with "
         "anything that processReplacing needs."},
        {"robustness.unusual-rates",
         "Makes an instance at 8,000, 22,050, 32,000 and 384,000 Hz each and plays 0.05 seconds. Broken "
         "samples are a warning, a crash fails.",
         "No session runs at these, yet format converters and games do.",
         "At 8 kHz a filter's cutoff lies beyond half the rate, where tan and the like turn over: limit it "
         "to 0.49 of the rate. At 384 kHz tables sized for 192 kHz are too short."},
        {"robustness.timer",
         "Wakes the instance's timer 200 times without a block and looks whether requests to the host come "
         "to an end.",
         "Hosts wake plug-ins on tracks that are switched off.",
         "With the feature IDLE the plug-in may get effIdle from it. It must not report parameters with "
         "audioMasterAutomate each time, nor count on a block in between."},
        {"robustness.initialised-twice",
         "Plays 0.05 seconds, initialises the instance a second time, plays again, and looks for broken "
         "samples and crashes.",
         "Some hosts do so when the audio device changes.",
         "The plug-in is closed and loaded anew: effClose and, at once, the entry function again, in the "
         "same process. Static variables that effClose left behind (an \"already initialised\" flag) are the "
         "cause."},
        {"robustness.everything",
         "Has one thread render 50 to 2,000 blocks of 1 to 512 frames with random notes while the main "
         "thread "
         "sets a parameter, wakes the timer and lists the parameters, again and again; in every fifteenth of "
         "the first 30 to 1,000 rounds it makes and deletes another instance. The strictness says how many. "
         "Looks for broken samples and crashes.",
         "That is an afternoon's work in half a minute.",
         "If life-cycle.independent and parameters.sweep-threads pass, the cause is between: a static table "
         "that a new instance's effOpen fills again, or an effClose that frees it, while another one "
         "renders. A thread sanitizer build of the plug-in names the line."},
    };
    return kTexts;
}
