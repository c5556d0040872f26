#pragma once
/**
 * The part of the system's view framework that this project's sources use, declared after its documentation
 * so that they can be compiled where it is not. Nothing stands behind it: what is compiled against it is
 * never linked.
 */
#include <sys/cdefs.h>

using BOOL = bool;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

using CGFloat = double;
using NSInteger = long;
using NSUInteger = unsigned long;

struct NSPoint
{
    CGFloat x = 0.0;
    CGFloat y = 0.0;
};
struct NSSize
{
    CGFloat width = 0.0;
    CGFloat height = 0.0;
};
struct NSRect
{
    NSPoint origin;
    NSSize size;
};
extern const NSRect NSZeroRect;
NSPoint NSMakePoint(CGFloat x, CGFloat y);
NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h);

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
@end

@protocol NSCopying
@end

@interface NSString : NSObject <NSCopying>
+ (instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
@end

using NSAttributedStringKey = NSString*;
using NSColorSpaceName = NSString*;
using NSImageHintKey = NSString*;
extern NSAttributedStringKey const NSFontAttributeName;
extern NSAttributedStringKey const NSForegroundColorAttributeName;
extern NSColorSpaceName const NSDeviceRGBColorSpace;

@interface NSDictionary<KeyType, ObjectType> : NSObject
+ (instancetype)dictionaryWithObjects:(const ObjectType[])objects
                              forKeys:(const KeyType<NSCopying>[])keys
                                count:(NSUInteger)count;
@end

@interface NSString (NSStringDrawing)
- (NSSize)sizeWithAttributes:(NSDictionary<NSAttributedStringKey, id>*)attrs;
- (void)drawAtPoint:(NSPoint)point withAttributes:(NSDictionary<NSAttributedStringKey, id>*)attrs;
@end

@interface NSColor : NSObject
+ (NSColor*)colorWithSRGBRed:(CGFloat)red green:(CGFloat)green blue:(CGFloat)blue alpha:(CGFloat)alpha;
@end

@interface NSFont : NSObject
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize;
@end

enum NSBitmapFormat : NSUInteger
{
    NSBitmapFormatAlphaFirst = 1U << 0,
    NSBitmapFormatThirtyTwoBitLittleEndian = 1U << 9
};
constexpr NSBitmapFormat operator|(NSBitmapFormat a, NSBitmapFormat b)
{
    return static_cast<NSBitmapFormat>(static_cast<NSUInteger>(a) | static_cast<NSUInteger>(b));
}
enum NSCompositingOperation : NSUInteger
{
    NSCompositingOperationSourceOver = 2
};

@interface NSImageRep : NSObject
- (BOOL)drawInRect:(NSRect)dstSpacePortionRect
          fromRect:(NSRect)srcSpacePortionRect
         operation:(NSCompositingOperation)op
          fraction:(CGFloat)requestedAlpha
    respectFlipped:(BOOL)respectContextIsFlipped
             hints:(NSDictionary<NSImageHintKey, id>*)hints;
@end

@interface NSBitmapImageRep : NSImageRep
- (instancetype)initWithBitmapDataPlanes:(unsigned char**)planes
                              pixelsWide:(NSInteger)width
                              pixelsHigh:(NSInteger)height
                           bitsPerSample:(NSInteger)bps
                         samplesPerPixel:(NSInteger)spp
                                hasAlpha:(BOOL)alpha
                                isPlanar:(BOOL)isPlanar
                          colorSpaceName:(NSColorSpaceName)colorSpaceName
                            bitmapFormat:(NSBitmapFormat)bitmapFormat
                             bytesPerRow:(NSInteger)rBytes
                            bitsPerPixel:(NSInteger)pBits;
@property(readonly) unsigned char* bitmapData;
@end

enum NSEventModifierFlags : NSUInteger
{
    NSEventModifierFlagShift = 1U << 17
};

@interface NSEvent : NSObject
@property(readonly) NSPoint locationInWindow;
@property(readonly) NSEventModifierFlags modifierFlags;
@end

@interface NSResponder : NSObject
- (void)mouseDown:(NSEvent*)event;
- (void)mouseDragged:(NSEvent*)event;
- (void)mouseUp:(NSEvent*)event;
@end

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frameRect;
- (void)addSubview:(NSView*)view;
- (void)removeFromSuperview;
- (BOOL)acceptsFirstMouse:(NSEvent*)event;
- (void)drawRect:(NSRect)dirtyRect;
- (NSPoint)convertPoint:(NSPoint)point fromView:(NSView*)view;
@property NSRect bounds;
@property BOOL needsDisplay;
@property(readonly, getter=isFlipped) BOOL flipped;
@end
