/* What this project calls of CoreFoundation, for the cross build only: a Mac has its own header in this
 * place. */
#pragma once
#include <MacTypes.h>

#ifdef __cplusplus
extern "C"
{
#endif

    typedef const void* CFTypeRef;
    typedef const struct __CFAllocator* CFAllocatorRef;
    typedef const struct __CFString* CFStringRef;
    typedef const struct __CFURL* CFURLRef;
    typedef struct __CFBundle* CFBundleRef;
    typedef long CFIndex;
    typedef UInt32 CFStringEncoding;
    typedef CFIndex CFURLPathStyle;

    enum
    {
        kCFStringEncodingUTF8 = 0x08000100
    };
    enum
    {
        kCFURLPOSIXPathStyle = 0
    };

    CFStringRef CFStringCreateWithCString(CFAllocatorRef inAllocator, const char* inText,
                                          CFStringEncoding inEncoding);
    CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef inAllocator, CFStringRef inPath,
                                           CFURLPathStyle inStyle, Boolean inIsDirectory);
    CFBundleRef CFBundleCreate(CFAllocatorRef inAllocator, CFURLRef inUrl);
    Boolean CFBundleLoadExecutable(CFBundleRef inBundle);
    void CFBundleUnloadExecutable(CFBundleRef inBundle);
    void* CFBundleGetFunctionPointerForName(CFBundleRef inBundle, CFStringRef inName);
    void CFRelease(CFTypeRef inObject);

#ifdef __cplusplus
}
#endif
