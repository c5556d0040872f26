#include "Tests/macho/subjects/UnwindShapes.h"

#include "Tests/macho/subjects/UnwindShapesBody.h"

int LostWithoutFramePointer() { return LostInAllShapes(); }
