#include "Examples/synth/editor/CKnobPanel.h"
#include "Examples/synth/editor/IPanelView.h"

#include <cmath>
#include <cstring>

#import <Cocoa/Cocoa.h>

namespace
{
NSColor* ToColor(Colour inColour)
{
    const auto part = [=](unsigned inShift)
    { return static_cast<CGFloat>((inColour >> inShift) & 0xFF) / 255.0; };
    return [NSColor colorWithSRGBRed:part(16) green:part(8) blue:part(0) alpha:1.0];
}

/** A copy of the canvas that AppKit draws. */
NSBitmapImageRep* ToImage(const CPixelCanvas& inCanvas)
{
    // Alpha first in numbers of 32 bits: what a canvas holds on a little-endian machine.
    NSBitmapImageRep* const image = [[NSBitmapImageRep alloc]
        initWithBitmapDataPlanes:nullptr
                      pixelsWide:inCanvas.Width()
                      pixelsHigh:inCanvas.Height()
                   bitsPerSample:8
                 samplesPerPixel:4
                        hasAlpha:YES
                        isPlanar:NO
                  colorSpaceName:NSDeviceRGBColorSpace
                    bitmapFormat:NSBitmapFormatAlphaFirst | NSBitmapFormatThirtyTwoBitLittleEndian
                     bytesPerRow:4 * inCanvas.Width()
                    bitsPerPixel:32];
    if (image != nil)
        std::memcpy([image bitmapData], inCanvas.Pixels().data(), inCanvas.Pixels().size_bytes());
    return image;
}

void DrawText(const SPanelText& inText)
{
    NSDictionary* const attributes = @{
        NSFontAttributeName : [NSFont systemFontOfSize:11.0],
        NSForegroundColorAttributeName : ToColor(inText.mColour)
    };
    NSString* const text = [NSString stringWithUTF8String:inText.mText.c_str()];
    const NSSize size = [text sizeWithAttributes:attributes];
    // The base line lies about a quarter of the height above the lower edge.
    [text drawAtPoint:NSMakePoint(inText.mX - size.width / 2.0, inText.mY - 0.75 * size.height)
        withAttributes:attributes];
}
} // namespace

// All plug-ins of a host share one space of class names: the prefix is this plug-in's.
@interface ExampleSynthPanelView : NSView
- (instancetype)initWithPanel:(CKnobPanel*)inPanel;
/** The panel may go before the view, which hosts can hold longer. */
- (void)forgetPanel;
@end

@implementation ExampleSynthPanelView
{
    CKnobPanel* mPanel;
    std::vector<SPanelText> mTexts;
}

- (instancetype)initWithPanel:(CKnobPanel*)inPanel
{
    self = [super initWithFrame:NSMakeRect(0.0, 0.0, inPanel->Width(), inPanel->Height())];
    if (self != nil)
        mPanel = inPanel;
    return self;
}

- (void)forgetPanel
{
    mPanel = nullptr;
}

- (BOOL)isFlipped
{
    return YES; // the panel counts from the top
}

- (BOOL)acceptsFirstMouse:(NSEvent*)__unused inEvent
{
    return YES;
}

- (void)drawRect:(NSRect)__unused inRect
{
    if (mPanel == nullptr)
        return;
    CPixelCanvas canvas(mPanel->Width(), mPanel->Height());
    mPanel->Paint(canvas, mTexts);
    [ToImage(canvas) drawInRect:[self bounds]
                       fromRect:NSZeroRect
                      operation:NSCompositingOperationSourceOver
                       fraction:1.0
                 respectFlipped:YES
                          hints:nil];
    for (const SPanelText& text : mTexts)
        DrawText(text);
}

- (void)mouseDown:(NSEvent*)inEvent
{
    if (mPanel != nullptr)
    {
        const NSPoint point = [self convertPoint:[inEvent locationInWindow] fromView:nil];
        mPanel->Press(static_cast<int>(std::floor(point.x)), static_cast<int>(std::floor(point.y)));
    }
}

- (void)mouseDragged:(NSEvent*)inEvent
{
    if (mPanel != nullptr)
    {
        const NSPoint point = [self convertPoint:[inEvent locationInWindow] fromView:nil];
        mPanel->Drag(static_cast<int>(std::floor(point.y)),
                     ([inEvent modifierFlags] & NSEventModifierFlagShift) != 0);
    }
}

- (void)mouseUp:(NSEvent*)__unused inEvent
{
    if (mPanel != nullptr)
        mPanel->Release();
}
@end

namespace
{
class CCocoaPanelView final : public IPanelView
{
public:
    CCocoaPanelView(NSView* inParent, CKnobPanel& ioPanel)
        : mPanel(ioPanel), mView([[ExampleSynthPanelView alloc] initWithPanel:&ioPanel])
    {
        [inParent addSubview:mView];
    }
    ~CCocoaPanelView() override
    {
        [mView forgetPanel];
        [mView removeFromSuperview];
    }

    void Idle() override
    {
        if (mPanel.IsOutdated())
            [mView setNeedsDisplay:YES];
    }

private:
    CKnobPanel& mPanel;
    ExampleSynthPanelView* mView;
};
} // namespace

std::unique_ptr<IPanelView> IPanelView::Create(void* inParent, CKnobPanel& ioPanel)
{
    if (inParent == nullptr)
        return nullptr;
    return std::make_unique<CCocoaPanelView>((__bridge NSView*)inParent, ioPanel);
}
