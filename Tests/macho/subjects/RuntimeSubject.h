#pragma once

// What the test on Linux and the image under test share: plain virtual classes with C types, as hosts and
// modules do. Their C++ libraries are not the same.

/** What the image throws and catches itself, some calls deep. */
enum ERuntimeThrow : int
{
    kThrowInteger,
    kThrowText,
    kThrowOwnType,
    kThrowRethrown,
    kThrowNested,
    kThrowOutOfRange, // by the C++ library
    kThrowVectorOutOfRange,
    kThrowBadCast,
    kThrowLengthError,
    kThrowThroughDwarfFrames,
    kThrowCount
};

/** On the test's side. */
class IRuntimeHost
{
public:
    virtual void Throw() = 0; // an exception of its C++ library's
    virtual int ThrowFive() = 0;

protected:
    ~IRuntimeHost() = default;
};

/** On the image's side. */
class IRuntimeSubject
{
public:
    virtual void Release() = 0;

    /** Throws an exception of the C++ library's. */
    virtual void Throw() = 0;
    /** The host's number passes. */
    virtual int CallHost(IRuntimeHost* inHost) = 0;
    /** @return whether an exception of the host's was caught here. */
    virtual bool CatchFromHost(IRuntimeHost* inHost) = 0;

    /**
     * @param inThrown       one of ERuntimeThrow.
     * @param outLiveObjects how many objects of the frames in between were not destroyed.
     * @return the same number when the exception arrived as what it was; -1 otherwise.
     */
    virtual int ThrowAndCatch(int inThrown, int* outLiveObjects) = 0;
    /** @return how many values kept across a throw were wrong afterwards, in frames of every form. */
    virtual int CountLostRegisters() = 0;
};

/** The image's one export. */
extern "C" IRuntimeSubject* MakeRuntimeSubject();
