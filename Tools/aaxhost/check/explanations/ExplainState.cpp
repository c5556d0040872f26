#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> StateExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"state.sizes",
         "Asks for every chunk's size, saves it into room with 256 marked bytes behind, and looks whether "
         "the marks are still there.",
         "What cannot be saved is lost with the session; a longer one than announced writes into the host.",
         "effGetChunk comes twice, for the size and for the data. A second answer that is longer, as from a "
         "time stamp or a growing list, is refused: give the same bytes while nothing changes. The pointer "
         "has to stay valid until the next effGetChunk."},
        {"state.round-trip",
         "Sets all parameters at random, plays 0.1 seconds, saves, sets others, plays, loads, and compares "
         "after 64 frames. A value that is off by more than 0.0001 fails where the plug-in also writes it "
         "differently or sounds otherwise with it.",
         "It is what happens when a song is opened: the sound has to come back.",
         "effSetChunk has to restore every value that getParameter tells, at once and not in a thread. "
         "Values left out of effGetChunk, rounding to steps, and a program that effSetProgram loads over the "
         "chunk (feature PROGRAM_FIRST) are the causes."},
        {"state.new-instance",
         "Sets all parameters at random, saves, loads into a new instance and compares after 64 frames, as "
         "state.round-trip does.",
         "Songs are opened on another day, in another process.",
         "What passes in state.round-trip and not here lives outside of the chunk, in a static variable or a "
         "file, or is set back to its default by a fresh instance after effSetChunk: in its first "
         "processReplacing, or by a thread that effOpen has started."},
        {"state.answers",
         "Loads a state with a host that answers at once, late, or only the last request, and looks whether "
         "a value has moved by more than 0.0001, or the saved bytes have changed, when all is answered.",
         "After a load the host sets each parameter to the value that it has just read. The state must "
         "survive that.",
         "Finish effSetChunk inside the call: a plug-in that loads in two steps, and moves values when it is "
         "next asked or in a thread, ends elsewhere. setParameter with the saved values may come before and "
         "after it, so a mode or a macro must not move other parameters where its value is the present one."},
        {"state.same-again",
         "Sets all parameters at random and saves twice without a change in between; other bytes are a "
         "warning.",
         "Hosts compare to know whether to ask \"save changes?\" and to make an undo step.",
         "Leave time stamps, counters, pointers, window positions and uninitialised padding out of "
         "effGetChunk, and write lists in a fixed order, not in a hash table's."},
        {"state.same-bytes", "Saves, loads into a new instance and saves again; other bytes are a warning.",
         "A song that changes by being opened is offered for saving every time.",
         "Text with too few digits is one cause: nine keep a float. Defaults that effSetChunk adds, a "
         "version that it upgrades, and names that it cuts are others."},
        {"state.same-sound",
         "Gives two new instances one state, renders 0.2 seconds of silence and 0.2 seconds of the test "
         "material; samples that differ by more than 0.0001 are a warning, unless two instances whose "
         "parameters were set alike differ as well.",
         "A copied track should sound as its original does.",
         "effSetChunk leaves something as it was: wave "
         "tables, impulse responses and modes that are loaded when setParameter or the editor asks for them "
         "only."},
        {"state.compares",
         "Saves every chunk and asks at once whether the instance differs from it; \"yes\" is a warning.",
         "Hosts light their compare button by this.",
         "The module compares the values that getParameter tells now with those in the controls chunk; the "
         "plug-in's own chunk always counts as unchanged. A parameter that is a meter, or a getParameter "
         "that answers another number the second time, lights the button for ever."},
        {"state.threads",
         "Saves and loads 10 to 500 times, by the strictness, while another thread renders blocks of 128 "
         "frames of noise, and looks for broken samples and crashes.",
         "Hosts save automatically, and musicians change presets, while the song plays.",
         "effGetChunk and effSetChunk run beside processReplacing. Read into a new object and hand it to the "
         "audio thread whole, by an atomic pointer at a block's start; free the old one elsewhere."},
        {"state.foreign",
         "Gives the instance a chunk of 64 bytes with the identifier \"none\" and looks whether a value "
         "moves by more than 0.0001.",
         "Sessions hold chunks of other versions and products.",
         "The module does not hand such a chunk to the plug-in. If a value moves here, it moves by itself: "
         "see parameters.at-rest."},
        {"state.truncated",
         "Loads each chunk cut to 5 to 201 lengths, by the strictness, from 0 bytes on, plays 0.03 seconds "
         "and saves after each. A good state has to come back at the end.",
         "Full disks and broken transfers cut files; the song has to open all the same, if without this "
         "sound.",
         "effSetChunk gets the true length in value: compare before each read, also 0 and 1, and do not rely "
         "on a zero at the end of text. Keep the old state where the new one is not whole."},
        {"state.random",
         "Loads 1 to 2,000 random bytes as each chunk, 3 to 200 times by the strictness, plays 0.03 seconds "
         "and saves after each. A good state has to come back at the end.",
         "A damaged song must not crash the host, which would take all other tracks with it.",
         "Begin the chunk with a mark and a length, and refuse in effSetChunk what has not got them. Check "
         "every count and offset against the length before memory is taken for it."},
        {"state.damaged",
         "Loads each chunk with one byte replaced at random, 5 to 300 times by the strictness, plays 0.03 "
         "seconds and saves after each. A good state has to come back at the end.",
         "One wrong byte passes a mark at the start and hits a count, an index or a float.",
         "Check what was read, not only whether it could be read: indexes against their tables, floats with "
         "isfinite and a clamp to 0 to 1, counts against the bytes that are left. Reset what the chunk does "
         "not mention."},
        {"state.huge", "Loads each chunk filled up with zeros to 64 MiB, plays 0.03 seconds and saves.",
         "Damaged lengths in a session make chunks of any size.",
         "Do not copy the chunk onto the stack or into an array of fixed size in effSetChunk, nor parse it "
         "once for each byte. Read what belongs to you and leave the rest."},
    };
    return kTexts;
}
