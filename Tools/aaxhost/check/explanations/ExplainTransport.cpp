#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> TransportExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"transport.tempos",
         "Plays 0.1 seconds each at 1, 20, 59.94, 120, 333.3 and 999 beats per minute and looks for broken "
         "samples and crashes.",
         "Slow tempos make the longest delay lines, and film composers work with all of them.",
         "A delay line sized for 60 beats per minute is overrun at 1. Limit a time that is derived from "
         "VstTimeInfo's tempo to the memory that there is."},
        {"transport.moving-tempo",
         "Plays noise and a note in 100 to 2,000 blocks of 128 frames, by the strictness, with a tempo that "
         "rises from 1 to 999, and looks for broken samples and crashes.",
         "Songs have ritardandos; hosts give each block another tempo.",
         "Moving a read position by the change of a delay's length can leave the buffer. Wrap it both ways, "
         "and do not allocate a new buffer when the tempo changes."},
        {"transport.stopped",
         "Plays 0.3 seconds of the test material while the transport stands and looks for broken samples.",
         "Hosts render all the time, for the musician who plays along a song that stands.",
         "Do not return early from processReplacing, or wait, when audioMasterGetTime says that nothing "
         "plays; the position is the same in every block then, so divide by no difference of positions."},
        {"transport.start-stop",
         "Plays and stops 20 times for 0.03 seconds each and looks for broken samples and crashes.",
         "Nobody presses the space bar once.",
         "What a plug-in resets at a start (voices, sequencers, analysers) has to be ready for being reset "
         "in the next block again, and must not be freed while it is used."},
        {"transport.jumps",
         "Renders 20 to 500 blocks of 512 frames, by the strictness, with noise and notes, each at a random "
         "place up to 2 to the power of 32 samples, and looks for broken samples and crashes.",
         "Every loop, every click into the time line is a jump.",
         "Do not compute a step or a phase by adding up since the last position: take it from VstTimeInfo's "
         "samplePos or ppqPos each time, modulo the pattern's length, as a 64-bit number."},
        {"transport.far-positions",
         "Plays 0.02 seconds at sample 0, -48,000, 2 to the power of 31, 2 to the power of 40, and half the "
         "largest and smallest 64-bit number, and looks for broken samples.",
         "Hosts play a pre-roll ahead of sample 0, and films begin at hour ten.",
         "C's remainder of a negative number is negative, and so an index in front of the table: add the "
         "length once. Do not keep samplePos in an int or a float."},
        {"transport.loop",
         "Loops over a quarter note with the position back at 0 every 0.05 seconds, 20 times, and looks for "
         "broken samples and crashes.",
         "Drummers and sound designers work in loops of a beat.",
         "cycleStartPos may equal cycleEndPos, or both be left out; divide by their difference only where "
         "the flags say that they are valid and it is above 0."},
        {"transport.meters",
         "Plays 0.05 seconds each in 3/4, 7/8, 1/1 and 31/32 and looks for broken samples and crashes.",
         "Not all music is in four.",
         "Step sequencers with a table for 16 steps overrun it in 31/32. Without the feature TIME the "
         "plug-in gets no meter: do not use timeSigNumerator or timeSigDenominator without their flag, where "
         "both may be 0."},
        {"transport.no-answers",
         "Has the host's transport refuse every question, plays 0.1 seconds and looks for broken samples.",
         "Hosts have no transport while they preview, scan or bounce a clip.",
         "The plug-in's time record stands still or holds zeros then, and other hosts answer "
         "audioMasterGetTime with null: go on with a tempo of 120, and look at the flags before tempo and "
         "position are used."},
    };
    return kTexts;
}
