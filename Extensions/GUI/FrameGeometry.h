#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "vstgui/lib/cframe.h"

/** Between the host's geometry and VSTGUI's; both count pixels. */

inline AAX_Point ExtentOf(const VSTGUI::CFrame& inFrame)
{
    const VSTGUI::CRect& rect = inFrame.getViewSize();
    return {static_cast<float>(rect.bottom - rect.top), static_cast<float>(rect.right - rect.left)};
}

inline VSTGUI::CRect RectOf(const AAX_Rect& inRect)
{
    return VSTGUI::CRect(
        VSTGUI::CPoint(static_cast<double>(inRect.mLeft), static_cast<double>(inRect.mTop)),
        VSTGUI::CPoint(static_cast<double>(inRect.mWidth), static_cast<double>(inRect.mHeight)));
}
