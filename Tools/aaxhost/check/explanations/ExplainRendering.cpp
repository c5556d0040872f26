#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> RenderingExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"rendering.block-sizes",
         "Plays the test material in blocks of 1, 2, 4, 8 and so on to 4,096 frames, 0.02 seconds below 16 "
         "frames and 0.1 above, and looks for broken samples and crashes.",
         "The musician chooses the buffer, and hosts cut it further.",
         "sampleFrames of processReplacing is anything from 1 to the size of effSetBlockSize. Do not assume "
         "that it is that size, or a multiple of 4 or 16 for vector code."},
        {"rendering.odd-blocks",
         "Plays 14 odd sizes from 3 to 4,095 frames, 0.02 seconds below 16 frames and 0.05 above, and looks "
         "for broken samples and crashes.",
         "Loop points and automation cut blocks to any length.",
         "Vector loops need a rest for the last 1 to 3 frames, and loads that do not ask for an aligned "
         "address: a block's later part begins anywhere in the host's buffer."},
        {"rendering.large-blocks",
         "Renders 12,288 frames of noise and three notes in blocks of 1,024, and again in blocks of 2,048 "
         "and 4,096: another sound (by more than 0.0001) fails. In blocks of 1, 7, 1,023 and 1,025 it is a "
         "warning. A plug-in that never sounds the same twice passes.",
         "Bounces use larger blocks than playback. They should sound alike.",
         "The plug-in gets parts of 1,024 frames, at addresses inside the host's buffer and one after the "
         "other. Do not keep the pointers of processReplacing from call to call. For the warning: do not "
         "read parameters or advance envelopes once a call."},
        {"rendering.changing-blocks",
         "Renders 100 to 5,000 blocks of random sizes from 1 to 4,096 frames, by the strictness, with noise "
         "and notes, and looks for broken samples and crashes.",
         "Where a loop ends or a marker stands, one block is shorter than the last.",
         "Take room for the size of effSetBlockSize once. A buffer that processReplacing makes anew when "
         "sampleFrames changes loses what was in it, and the rest of an FFT frame has to wait for the next "
         "call, however short."},
        {"rendering.empty-block",
         "Renders a block of 0 frames and then 0.02 seconds, five times, and looks for broken samples and "
         "crashes.",
         "Some hosts send one to hand over parameters or events.",
         "sampleFrames may be 0: a loop that runs at least once writes behind the block, and a division by "
         "it gives infinity. Return early, after the events."},
        {"rendering.rates",
         "Makes an instance at 44,100, 48,000, 88,200, 96,000, 176,400 and 192,000 Hz each, plays 0.1 "
         "seconds and looks for broken samples and crashes.",
         "Sessions run at each of these.",
         "Size delay lines and tables in seconds times the rate of effSetSampleRate, not for 48 kHz. The "
         "rate comes before effOpen and once more after it: derive coefficients from the last one."},
        {"rendering.bounds",
         "Plays blocks of 17 sizes from 1 to 4,096 frames into outputs with 256 marked words in front and "
         "the buffer's rest and 256 words behind, and looks whether a mark is gone.",
         "What is written outside of a block is another plug-in's sound or the host's memory: it crashes "
         "later and elsewhere.",
         "processReplacing may write sampleFrames samples in each output and not one more, not rounded up to "
         "a multiple of 4 or to the size of effSetBlockSize. Look for vector stores at the end, and for a "
         "first sample at index -1."},
        {"rendering.inputs-kept",
         "Plays 0.2 seconds and compares the first input's samples before and after each block, bit for bit; "
         "another one is a warning.",
         "Some hosts give the same input buffer to several plug-ins, or meter it afterwards.",
         "processReplacing's inputs are the host's: copy them before gain, mixing or an FFT works on them in "
         "place."},
        {"rendering.writes-outputs",
         "Fills every output with marks before each block of 512, 1, 64 and 1,024 frames, plays the test "
         "material and four blocks of silence, and looks for marks that are left.",
         "Hosts do not clear their buffers. What stays unwritten is heard as noise, or as another track.",
         "processReplacing writes every frame of every output in every call, with zeros where it is silent: "
         "also without voices, in bypass, in a trial version and for outputs that are switched off. Do not "
         "add into the buffer: that is the old process call."},
        {"rendering.in-place",
         "Plays 0.2 seconds with outputs of their own, twice, and once with each output in its input's "
         "memory: another sound (by more than 0.0001) fails. Without two equal runs only broken samples are "
         "looked for.",
         "Most hosts render in place.",
         "inputs[0] may be outputs[0]. A loop that writes the left output before it reads the right input is "
         "well; one that clears the outputs first, or runs over the block twice, loses the input. Copy it, "
         "or read before you write."},
        {"rendering.shared-outputs",
         "Gives the third and all further outputs one buffer, plays 0.2 seconds, looks for broken samples "
         "and compares the first two outputs with those of an instance whose outputs have buffers of their "
         "own: another sound (by more than 0.0001) fails. Without two equal runs only broken samples are "
         "looked for. Skipped with up to three outputs.",
         "Hosts have one waste buffer for the outputs of a drum machine that no track uses.",
         "Do not use an output as scratch memory that is read again later in the call: another output has "
         "been written there meanwhile."},
        {"rendering.repeatable",
         "Plays 0.3 seconds of the test material in two fresh instances; samples that differ by more than "
         "0.0001 are a warning.",
         "A bounce should be what was approved.",
         "Random phases, free-running oscillators and noise make it so, often on purpose: then leave it. If "
         "not meant, look for memory that is not cleared in effMainsChanged, and seed generators with a "
         "fixed number."},
        {"rendering.allocations",
         "Counts calls of malloc, free and their like in 50 to 2,000 blocks of 256 frames, by the "
         "strictness, with notes and a controller, and in as many with a parameter moved before each. The "
         "plug-in's in the first fail, in the second they warn.",
         "The allocator may wait for another thread or for memory from the system: clicks under load, at "
         "small buffers first.",
         "Take all memory in effOpen, effSetBlockSize or effMainsChanged. In processReplacing and "
         "effProcessEvents look for std::vector that grows, std::string, std::function, new voices, and "
         "temporary arrays of sampleFrames. The sentence names who made the first call; an address in the "
         "plug-in's file is what addr2line takes."},
        {"rendering.locks",
         "Counts locks that may have to wait, in the same blocks as rendering.allocations; in the blocks "
         "after a parameter has moved the plug-in's warn only.",
         "If the editor's thread holds the lock and is put to sleep, the audio thread waits for it: a "
         "dropout.",
         "Replace the mutex around values by atomics, one around lists by a ring buffer with one writer and "
         "one reader, and where neither goes use try_lock and play on with the old state. Log nothing while "
         "rendering."},
        {"rendering.system-calls",
         "Names the first system call of each block, in the same blocks as rendering.allocations; in the "
         "blocks after a parameter has moved the plug-in's warn only.",
         "Files, sleeps and the waking of threads take as long as the system likes, and the block is late.",
         "futex is a lock or a thread that is woken, write a log, mmap and brk an allocation, "
         "clock_nanosleep a wait. Move the work to a thread of your own that looks by itself, and stream "
         "samples ahead of their use."},
        {"rendering.keeps-up",
         "Plays 0.2 seconds of the test material to settle, then one second in blocks of 256 frames, and "
         "takes the processor time of all threads for it; more than a second is a warning.",
         "What takes longer than it plays cannot be played, on this machine, with these settings.",
         "Look first for denormal numbers, which cost a hundred times as much: set the processor's "
         "flush-to-zero flag in processReplacing, and put it back. Then for debug builds, and tables that "
         "are rebuilt in each block."},
        {"rendering.long-run",
         "Plays the test material for 5 to 60 seconds, by the strictness, and looks for broken samples after "
         "each.",
         "Some faults need a minute of a song.",
         "Sums that never shrink are the cause: running means without a reset, recursive oscillators whose "
         "level drifts, feedback a little above 1, a sample counter that overflows. Renormalise, or compute "
         "from the position."},
    };
    return kTexts;
}
