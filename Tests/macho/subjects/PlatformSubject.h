#pragma once

/**
 * The project's macOS sources and its VST 2 host, linked into an image of their own; plain C types, since the
 * test has another C++ library.
 */
class IPlatformSubject
{
public:
    virtual void Release() = 0;

    // One plug-in image at a time.
    virtual bool OpenImage(const char* inPath) = 0;
    virtual bool LoadExecutable() = 0;
    virtual void* FindSymbol(const char* inName) = 0;
    virtual void UnloadImage() = 0;
    /** Destroys the object only. */
    virtual void DropImage() = 0;

    // One wrapped plug-in at a time.
    virtual bool LoadPlugin(const char* inPath) = 0;
    /** Empty without one. */
    virtual const char* PluginName() = 0;
    /** Unloads its executable. */
    virtual void FreePlugin() = 0;
    virtual void DestroyPlugin() = 0;

    virtual unsigned long MouseModifiers() = 0;
    /** Opens that many autorelease pools inside each other; the innermost scope is left by an exception on
     * demand. */
    virtual void NestPools(int inDepth, bool inThrows) = 0;
    /** Finds the path of this very image. */
    virtual bool FindOwnPath(char* outPath, int inSize) = 0;
};

/** The image's one export. */
extern "C" IPlatformSubject* MakePlatformSubject();
