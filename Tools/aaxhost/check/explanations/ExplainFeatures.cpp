#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> FeatureExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"features.time",
         "Plays 2 seconds at 120 and at 90 beats per minute, from second 10 in a loop, with up to 5 settings "
         "until the plug-in called directly sounds different at the two. The module has to sound sample for "
         "sample as that.",
         "With TIME, delays and arpeggiators follow the song.",
         "Ask audioMasterGetTime in each processReplacing, with the flags of what you need, and keep no "
         "pointer to the answer. A plug-in that asks once, in effMainsChanged or on another thread, follows "
         "by chance. Skipped where no setting depends on the tempo."},
        {"features.latency",
         "Plays a second, moves all parameters, plays another, and compares after each what the host was "
         "told with initialDelay of the plug-in called directly; a negative one, or more than 10 seconds, "
         "counts as 0.",
         "With LATENCY, tracks stay together when a look-ahead is switched on.",
         "The module looks at each beat of its timer. Write the number into initialDelay of AEffect, not "
         "only into the answer to a call, and let it depend on the values, not on when they came."},
        {"features.host-answers",
         "Plays 2 seconds with the plug-in called directly, once with answers to its questions and once "
         "without. Where the two differ in sound or chunk, the module has to be as the first, bit for bit.",
         "With HOST_ANSWERS, plug-ins that ask for rate, block size or vendor work as in hosts they know.",
         "The plug-in may ask when the module cannot know yet, inside its entry function above all: ask in "
         "effOpen or effMainsChanged, and again when effSetSampleRate comes. If the bundle is not what was "
         "built, features.txt in it promises what the module has not got: build anew."},
        {"features.idle",
         "Plays 2 seconds with the plug-in called directly, with and without the effIdle that it asks for by "
         "audioMasterNeedIdle. Where the two differ, the module has to be as the first, bit for bit.",
         "With IDLE, plug-ins that load or compute outside of their editor get done.",
         "effIdle comes about 30 times in a second of sound. Answer with 1 to get more of it, 0 when it is "
         "done, and ask anew with audioMasterNeedIdle; it makes no difference on which thread you ask."},
        {"features.resize",
         "Opens the editor of the plug-in called directly for 20 beats and notes the size that it asks for "
         "or takes. The module's host has to be asked for that size, and its view to have it, within 40 "
         "beats.",
         "With RESIZE, an editor that grows is not cut off at its old edge.",
         "Ask with audioMasterSizeWindow, from 1 to 16,384 pixels, and let effEditGetRect answer with the "
         "new size from then on. Skipped where the size stays as it is."},
        {"features.midi-output",
         "Plays six notes over noise in blocks of 512 frames and compares each message that the module "
         "posts, with its frame, with what the plug-in called directly sends. Packets that a host would "
         "misplay fail as well.",
         "With MIDI_OUTPUT, arpeggiators and triggers can be recorded on another track.",
         "Answer effCanDo for sendVstEvents or sendVstMidiEvent with 1 before effOpen: the node is described "
         "at the scan. Send with audioMasterProcessEvents in processReplacing, deltaFrames within the "
         "block."},
        {"features.sysex",
         "Sends a master volume message and one of 600 bytes in packets of four bytes to the module, and "
         "each as one event to the plug-in called directly. Sound and chunk have to be the same, bit for "
         "bit.",
         "With SYSEX, patches can be sent to an instrument as to the hardware that it follows.",
         "Read VstMidiSysexEvent by dumpBytes and sysexDump, and copy it inside effProcessEvents: it may be "
         "gone in processReplacing. Skipped where such messages change nothing."},
        {"features.program-first",
         "Saves a state of random values and loads it in a new instance: values (within 0.0001) and saved "
         "bytes have to be as where effSetProgram came ahead of effSetChunk, called directly. Skipped with "
         "less than two programs, without a chunk, or where the order makes no difference.",
         "With PROGRAM_FIRST, edits that were made after choosing a program are not lost with the song.",
         "A program that is chosen late, by a thread or in the first block after effSetProgram, still "
         "overwrites the chunk: load it before effSetProgram returns. For hosts of VST 2 too, leave the "
         "values alone in effSetProgram where the program is the present one."},
    };
    return kTexts;
}
