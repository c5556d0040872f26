#pragma once
#include "vstgui/lib/vstguibase.h"

namespace VSTGUI
{
struct CPoint
{
    CPoint(CCoord inX, CCoord inY) : x(inX), y(inY) {}
    CCoord x;
    CCoord y;
};

struct CRect
{
    CRect() = default;
    CRect(CCoord inLeft, CCoord inTop, CCoord inRight, CCoord inBottom)
        : left(inLeft), top(inTop), right(inRight), bottom(inBottom)
    {
    }
    CRect(const CPoint& inOrigin, const CPoint& inSize)
        : CRect(inOrigin.x, inOrigin.y, inOrigin.x + inSize.x, inOrigin.y + inSize.y)
    {
    }
    CCoord left = 0;
    CCoord top = 0;
    CCoord right = 0;
    CCoord bottom = 0;
};
} // namespace VSTGUI
