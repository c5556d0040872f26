#pragma once

// Throws through functions that save 0 to 6 registers and have small and large frames, and counts the values
// that the catcher kept in registers and found changed. The same code is compiled with and without a frame
// pointer.
int LostWithFramePointer();
int LostWithoutFramePointer();
