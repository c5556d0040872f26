#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> EditorExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"editor.opens",
         "Opens the editor in a window, waits about a second for its size, gives it five beats of the timer, "
         "and fails where it is wider or higher than 8,192 pixels. Skipped where there is no size.",
         "An editor that does not open, or is larger than every screen, leaves the musician with sliders.",
         "effEditOpen gets the window's native handle: make a child of it. Answer effEditGetRect with a "
         "pointer to a record of your own that stays valid; many plug-ins know their size only after "
         "effEditOpen, which is allowed."},
        {"editor.object",
         "Makes the module's editor object three times, wakes it and asks for its size, without ever giving "
         "it a window.",
         "Hosts make the object to ask for its size, and show it later or never.",
         "effEditGetRect may come without effEditOpen before it: answer with the size that the editor would "
         "have, and touch no window there."},
        {"editor.reopens",
         "Opens the editor, gives it two beats of the timer and closes it, 2 to 30 times by the strictness.",
         "A musician opens and closes it a hundred times a day.",
         "effEditClose has to undo all of effEditOpen: window, timers, bitmaps, event handlers, the "
         "connection to the display. A class registered twice and a pointer to the closed window that "
         "effEditIdle uses are the usual causes."},
        {"editor.window-taken",
         "Takes the window away from the open editor and gives it back, three times, with two beats of the "
         "timer in each state.",
         "Hosts take it away when a track is hidden or another plug-in is shown in the same window.",
         "Each time effEditClose and a later effEditOpen come, maybe with another handle, in the same "
         "instance: keep nothing of the old window. Timers of your own must not draw in between."},
        {"editor.deleted-open",
         "Deletes an instance while its editor is open in a window, looks whether objects of the module are "
         "left, and has a new instance play 0.05 seconds.",
         "Deleting a track does not ask whether its window was closed first.",
         "Then effEditClose, effMainsChanged and effClose come at once. Close the editor in effClose too if "
         "it is still open, and post nothing to the window that is handled after the plug-in is gone."},
        {"editor.gestures",
         "Opens the editor, sets every parameter to 0.4 as a knob of the host does, plays 0.1 seconds, "
         "closes the editor "
         "and counts the beginnings and ends of edits: as many of both.",
         "An edit without an end holds the control: its automation does not play any more.",
         "Call audioMasterBeginEdit and audioMasterEndEdit in pairs, around what the mouse does only. An "
         "editor that follows setParameter must not begin an edit; one that is closed in a drag ends it in "
         "effEditClose."},
        {"editor.changes-nothing",
         "Opens the editor for five beats of the timer, closes it, and compares every parameter with before, "
         "within 0.0001.",
         "To look at a plug-in must not change the song.",
         "Controls that report their start position when they are made, by audioMasterAutomate or "
         "setParameter, round the value to a pixel or a step. Set them silently in effEditOpen."},
        {"editor.while-rendering",
         "Opens the editor while another thread renders blocks of 128 frames of noise, sets every parameter "
         "to 0.6, gives it five beats, and looks for broken samples and crashes.",
         "The song plays on when a window opens.",
         "effEditOpen and effEditIdle run beside processReplacing. Pass meters and curves through atomics or "
         "a ring buffer; no editor may resize, or lock, what processReplacing reads."},
        {"editor.two",
         "Opens the editors of two instances in two windows, closes the first and gives the second three "
         "beats.",
         "Two equalisers are compared side by side every day.",
         "A static pointer to \"the editor\", a window class or a connection to the display that the first "
         "one takes with it in effEditClose is the cause. Count the users, or give each its own."},
    };
    return kTexts;
}
