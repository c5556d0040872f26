#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> MidiExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"midi.note-sounds",
         "Sends an instrument note 60 with velocity 110 and renders a second. A warning where no sample is "
         "above -80 dB.",
         "A musician who loads an instrument and plays a key wants to hear something.",
         "Start with a program that sounds. If it does at home, look at effProcessEvents: it comes before "
         "processReplacing, with deltaFrames within that block, on channel 1. A sampler without samples has "
         "to live with the warning."},
        {"midi.note-ends",
         "Plays note 60 for half a second, releases it, and waits 8 to 60 seconds, by the strictness, until "
         "a second is below -80 dB or 60 dB below the note.",
         "A note that hangs drones through the mix and through the bounce.",
         "Take 0x80 as the end of a note, and 0x90 with velocity 0 too. Compare note and channel, ignore the "
         "release velocity, and end the loop of a sample. A drone by design fails as well: give it an end of "
         "its own, or --skip with the reason."},
        {"midi.all-notes-off",
         "Plays note 60 for half a second in two instances, sends controller 120 to the first and 123 to the "
         "second, and looks 6 seconds later whether half a second is below -80 dB or 40 dB below the note. "
         "Where neither ends it, it is a warning; where one does, the check passes and says what the other "
         "left.",
         "These two are what a host's panic button and its stop send.",
         "Answer controller 120 in effProcessEvents by dropping all voices, and 123 by releasing all. Many "
         "plug-ins hand controllers to a table of mappings that knows neither."},
        {"midi.timing",
         "Plays a note at frame 0 and, in another instance, at frame 300 of a block of 512. On the first "
         "output the second one has to begin exactly 300 frames later; if not, it is a warning.",
         "Notes that all begin with their block swing by up to a block, differently at each buffer size.",
         "Use deltaFrames of each VstEvent: split the block there, or begin the voice inside it. Starting "
         "all at frame 0 gives 0 here, and control steps of 32 frames a multiple of 32."},
        {"midi.block-edges",
         "In blocks of 1, 7, 64 and 1,024 frames sends a note at the first frame, a release at the last, a "
         "note at the first frame beyond and a release at frame 100,000, and looks for broken samples and "
         "crashes.",
         "Hosts round positions, and some send an event for the next block too early.",
         "A deltaFrames used as an index of the output buffer writes behind it. Clamp it to the block, from "
         "0 to the frames less one."},
        {"midi.many-voices",
         "Starts all 128 notes with velocity 127 in one block, renders 0.2 seconds, releases all, renders "
         "0.2 seconds, and looks for broken samples.",
         "An arm on the keyboard, or a sustain pedal and a long phrase, ask for more voices than there are.",
         "Steal a voice when none is free instead of taking the next place in the array, and keep tables of "
         "notes 128 long. Frequencies of the highest notes may lie beyond half the rate: limit what is "
         "derived from them."},
        {"midi.controllers",
         "Holds a note, sends all 128 controllers, each on one of the 16 channels, with 127, 0 and 64, and "
         "looks for broken samples.",
         "A keyboard's knobs send what they like, bank selects and mode messages included.",
         "A value of 0 or 127 that reaches a filter, a divisor or an index unchecked is the cause. "
         "Controllers 120 to 127 are mode messages, 0 and 32 choose banks that may not exist."},
        {"midi.channel-messages",
         "On each of 16 channels sends a note, the pitch bend's two ends, channel and key pressure and eight "
         "program changes, and looks for broken samples.",
         "Any keyboard sends these, and recorded parts are full of them.",
         "Program changes to programs that do not exist must be ignored, not used as an index. A program "
         "change in effProcessEvents that loads a program must not free what processReplacing plays. 0xC0 "
         "and 0xD0 have one data byte only."},
        {"midi.flood",
         "Sends 300 to 10,000 note messages, by the strictness, in each of four blocks of 512 frames, and "
         "looks for broken samples and crashes.",
         "Controllers drawn with a mouse, and looped MIDI tracks, give blocks of thousands of messages.",
         "The module calls effProcessEvents several times in a block then, each with at most 300 events. Do "
         "not take the second call for a replacement of the first, and do not copy events into an array of "
         "fixed size unchecked."},
        {"midi.malformed",
         "Sends 16 packets of random bytes, 0 to 4 long, in each of 50 blocks of 64 frames, and looks for "
         "broken samples and crashes.",
         "Pieces of system exclusive messages and running status reach plug-ins through damaged files and "
         "drivers.",
         "In effProcessEvents look at the status byte first: below 0x80 it is none. Mask data bytes with "
         "0x7F before they become an index of a table of 128."},
    };
    return kTexts;
}
