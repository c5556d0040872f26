#include "Tests/unit/Extensions/ParentView.h"

void* ParentView()
{
    static int view = 0; // nobody looks into it
    return &view;
}
