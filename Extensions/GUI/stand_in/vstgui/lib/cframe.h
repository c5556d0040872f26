#pragma once
#include "vstgui/lib/cviewcontainer.h"

namespace VSTGUI
{
class VSTGUIEditorInterface;
enum class PlatformType
{
    kDefaultNative
};

/** Without a window it has no size and cannot be moved, and without a context it draws nothing. */
class CFrame : public CViewContainer
{
public:
    CFrame(const CRect& inSize, VSTGUIEditorInterface*) : CViewContainer(inSize) {}
    virtual bool open(void* inSystemWindow, PlatformType inType = PlatformType::kDefaultNative);
    virtual bool setPosition(CCoord inX, CCoord inY);
    virtual bool setSize(CCoord inWidth, CCoord inHeight);
    virtual bool getSize(CRect* outSize) const;
    virtual bool getSize(CRect& outSize) const;
    virtual void drawRect(CDrawContext* inContext, const CRect& inUpdate);

protected:
    ~CFrame() override = default;
};

class VSTGUIEditorInterface
{
public:
    virtual void doIdleStuff() {}
    virtual int32_t getKnobMode() const { return -1; }
    virtual void beginEdit(int32_t) {}
    virtual void endEdit(int32_t) {}
    virtual bool beforeSizeChange(const CRect&, const CRect&) { return true; }
    virtual CFrame* getFrame() const { return frame; }

protected:
    VSTGUIEditorInterface() = default;
    virtual ~VSTGUIEditorInterface() = default;
    CFrame* frame = nullptr;
};
} // namespace VSTGUI
