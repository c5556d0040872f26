#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> LifeCycleExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"life-cycle.creates", "Makes one instance at 48,000 Hz and looks whether it has an output channel.",
         "It is what happens when a musician inserts the plug-in. If it fails, nothing else can be checked.",
         "The plug-in crashed, hung or refused in its entry function, effSetSampleRate, effSetBlockSize, "
         "effOpen or effMainsChanged. The last four come twice, in this order: accept a second effOpen. A "
         "dialogue, a licence server or a wait for the network in effOpen shows here as a hang."},
        {"life-cycle.deletes",
         "Makes an instance, deletes it, and counts the module's objects that are still alive.",
         "An object that outlives its instance calls a host that has forgotten it, at the latest when the "
         "session is closed.",
         "Return from effClose, and end all threads of the plug-in there. An exception out of effClose or "
         "effMainsChanged is caught by the module, yet what the plug-in did not free stays."},
        {"life-cycle.repeats",
         "Makes an instance, renders 64 frames and deletes it, 3 to 200 times by the strictness, and counts "
         "the module's objects at the end.",
         "Musicians try plug-ins out, undo and open songs; hosts make instances only to look at them.",
         "Free in effClose what effOpen and the entry function took: files, threads, timers, window classes, "
         "places in fixed tables. What works three times and not two hundred is mostly a table or a "
         "thread-local key that runs out."},
        {"life-cycle.memory",
         "Measures the memory of the process around parts of 2 to 50 instances, by the strictness, that are "
         "made, render 64 frames and are deleted. It fails when each of ten parts takes more than 16 KiB an "
         "instance.",
         "A session that is open for a day, or a host that makes instances for every bounce, runs out of "
         "memory.",
         "Find what the plug-in takes in its entry function or in effOpen and does not give back in "
         "effClose: sample tables, FFT plans, the AEffect itself, buffers that effSetBlockSize replaces. "
         "effOpen comes twice and must not take all again."},
        {"life-cycle.many",
         "Has 4 to 50 instances, by the strictness, render four blocks of 256 frames in turn, with noise and "
         "a note, and looks for broken samples.",
         "A mix has the same equaliser on every track.",
         "Look for buffers, tables and random generators that are static in the plug-in, and for resources "
         "of which a process has few. All instances share one loaded library."},
        {"life-cycle.fifty",
         "Makes 50 instances, each of which renders 128 frames while all earlier ones live, and looks for "
         "broken samples.",
         "Large templates come to that number before a note is played.",
         "Each instance should take memory by need: load samples and tables once for all and count who uses "
         "them. Do not start several threads an instance."},
        {"life-cycle.independent",
         "Sets every parameter of one instance and looks whether another one moves by more than 0.000001. "
         "Then gives two instances a state each, renders 20 blocks of 64 frames in both by turns, and looks "
         "whether either one's values move by more than 0.0001.",
         "A knob that moves the same plug-in on another track destroys a mix without anybody noticing.",
         "Values that live in a static or global variable of the plug-in are the cause, or a pointer to the "
         "instance made last that setParameter, effSetChunk or processReplacing uses. Keep all of it behind "
         "AEffect's object or user pointer."},
        {"life-cycle.any-order",
         "Makes four instances and deletes the first, then the middle one of the three, then the last; those "
         "that are left play 0.05 seconds after each.",
         "Tracks are deleted in any order. Instances rarely go as they came.",
         "An effClose that frees what all instances share, the first or the last one's tables say, takes it "
         "from the others. Count the users, and free with the last."},
        {"life-cycle.reopens",
         "Opens the module, plays 0.05 seconds and closes the module, three times in one process.",
         "Hosts scan and then open again, or unload what no track uses.",
         "The plug-in's library is unloaded in between. Threads that still run, atexit handlers, window "
         "classes and hooks that point into it crash now: undo them all in effClose, or in static "
         "destructors that do not wait for threads."},
        {"life-cycle.references",
         "Ends an instance's parameters as a host does, and looks whether the instance has released the "
         "host's object more often than it took it.",
         "One release too many frees the host's object while the host uses it.",
         "The count is the module's own and the plug-in never sees these objects: tell the maker of the "
         "adapter, with the plug-in and the options of the product."},
        {"life-cycle.notes-left-on",
         "Starts 60 notes (30 to 89), renders 0.1 seconds, deletes the instance and has a new one render 0.1 "
         "seconds of silence.",
         "A musician deletes a track while it plays.",
         "Voices that are freed late, by a thread or through a static list, are the cause. effMainsChanged "
         "with 0 and then effClose come without note-offs: drop all voices there."},
    };
    return kTexts;
}
