#include "vstgui_stand_in.h"

#include "vstgui/lib/cframe.h"

#include <cstdio>
#include <utility>

namespace
{
// Written by every call of the stand-in; main thread only.
std::vector<std::string> gCalls;

void Record(const char* inName, std::initializer_list<double> inNumbers = {})
{
    std::string line = inName;
    for (const double number : inNumbers)
    {
        char text[32];
        (void)std::snprintf(text, sizeof(text), " %g", number); // 32 characters hold any %g
        line += text;
    }
    gCalls.push_back(std::move(line));
}
} // namespace

std::vector<std::string> TakeVstguiCalls() { return std::exchange(gCalls, {}); }

namespace VSTGUI
{
void CBaseObject::forget()
{
    Record("forget");
    if (--mReferences == 0)
        delete this;
}

void CViewContainer::setBackgroundColor(const CColor& inColor)
{
    Record("setBackgroundColor", {static_cast<double>(inColor.red), static_cast<double>(inColor.green),
                                  static_cast<double>(inColor.blue)});
}

bool CViewContainer::onDrop(IDataPackage*, const CPoint& inWhere)
{
    Record("onDrop", {inWhere.x, inWhere.y});
    return true;
}

void CViewContainer::onDragEnter(IDataPackage*, const CPoint& inWhere)
{
    Record("onDragEnter", {inWhere.x, inWhere.y});
}

void CViewContainer::onDragLeave(IDataPackage*, const CPoint& inWhere)
{
    Record("onDragLeave", {inWhere.x, inWhere.y});
}

void CViewContainer::onDragMove(IDataPackage*, const CPoint& inWhere)
{
    Record("onDragMove", {inWhere.x, inWhere.y});
}

CFrame::CFrame(const CRect& inSize, VSTGUIEditorInterface*) : CViewContainer(inSize) { Record("CFrame"); }

CFrame::~CFrame() { Record("~CFrame"); }

bool CFrame::open(void*, PlatformType)
{
    Record("open");
    return true;
}

bool CFrame::setPosition(CCoord inX, CCoord inY)
{
    mSize = CRect(CPoint(inX, inY), CPoint(mSize.right - mSize.left, mSize.bottom - mSize.top));
    return true;
}

bool CFrame::setSize(CCoord inWidth, CCoord inHeight)
{
    mSize = CRect(CPoint(mSize.left, mSize.top), CPoint(inWidth, inHeight));
    return true;
}

bool CFrame::getSize(CRect* outSize) const
{
    *outSize = mSize;
    return true;
}

bool CFrame::getSize(CRect& outSize) const
{
    outSize = mSize;
    return true;
}

void CFrame::drawRect(CDrawContext*, const CRect& inUpdate)
{
    Record("drawRect", {inUpdate.left, inUpdate.top, inUpdate.right, inUpdate.bottom});
}
} // namespace VSTGUI
