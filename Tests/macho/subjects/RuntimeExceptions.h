#pragma once

/** @see IRuntimeSubject::ThrowAndCatch */
int ThrowSomethingAndCatchIt(int inThrown, int& outLiveObjects);

/** Throws an integer through functions that only the DWARF table describes. */
int ThrowThroughDwarfFrames(int inDepth, int& ioLiveObjects);
