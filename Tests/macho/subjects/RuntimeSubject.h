#pragma once

// What the test on Linux and the image under test share: plain virtual classes with C types, as hosts and
// modules do. Their C++ libraries are not the same.

/** Too large for registers. */
struct SRuntimeResult
{
    double values[4];
    long tag;
};

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
    virtual int Notify(long inIndex, float inValue, double inWideValue) = 0;
    virtual long long Position(bool* outPlaying) = 0;
    virtual void Text(const char* inText) = 0;

protected:
    ~IRuntimeHost() = default;
};

/** On the image's side. */
class IRuntimeSubject
{
public:
    virtual void Release() = 0;

    virtual int Sum(int inA, long inB, float inC, double inD, long long inE, short inF, unsigned inG, int inH,
                    int inI) = 0;
    /** @return the value, its double, sine and square root. */
    virtual SRuntimeResult Return(double inValue, long inTag) = 0;
    /** Halves two channels. Throws for a negative count. */
    virtual void Process(float** inInputs, float** outOutputs, int inFrames) = 0;
    /** Calls all of the host's operations; what they throw passes. */
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

    /** Writes numbers and texts in the ways that the C++ library has, '|' between them. */
    virtual void FormatText(double inValue, float inSmallValue, long inWhole, char* outText, int inSize) = 0;
    /** @return 1, 2, 3, ... on each thread. */
    virtual int NextOnThisThread() = 0;
    /** @param inHost told a text when the calling thread ends. */
    virtual void TellAtThreadEnd(IRuntimeHost* inHost) = 0;
    /** Writes the path of the image's file and the name of a function in it. */
    virtual bool DescribeItself(char* outText, int inSize) = 0;

    virtual void AddUnderStaticMutex(long* ioCounter, int inTimes) = 0;
    /** @return 0 when a recursive mutex can be locked twice, unlocked and destroyed. */
    virtual int LockTwice() = 0;
    /** @return the error of locking an error-checking mutex twice. */
    virtual int LockAgainWithErrorCheck() = 0;
    /** @return what a thread of the image's own handed over through a condition. */
    virtual int AskWorker(int inQuestion) = 0;
};

/** The image's one export. @param inHost told a text when the image is unloaded. */
extern "C" IRuntimeSubject* MakeRuntimeSubject(IRuntimeHost* inHost);
