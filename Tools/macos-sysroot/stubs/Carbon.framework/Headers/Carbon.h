/* What this project calls of Carbon, for the cross build only: a Mac has its own header in this place. */
#pragma once
#include <MacTypes.h>

#ifdef __cplusplus
extern "C"
{
#endif

    enum
    {
        cmdKey = 1 << 8,
        shiftKey = 1 << 9,
        optionKey = 1 << 11,
        controlKey = 1 << 12
    };

    UInt32 GetCurrentButtonState(void);
    UInt32 GetCurrentKeyModifiers(void);

#ifdef __cplusplus
}
#endif
