#include "Tests/macho/subjects/RuntimeSubject.h"

#include "Tests/macho/subjects/RuntimeExceptions.h"
#include "Tests/macho/subjects/UnwindShapes.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <pthread.h>

namespace
{
/** Made before the image is used, destroyed when it is unloaded. */
class CGlobal
{
public:
    CGlobal() : mText("made by a constructor, and longer than the short form") {}
    CGlobal(const CGlobal&) = delete;
    CGlobal& operator=(const CGlobal&) = delete;
    ~CGlobal()
    {
        if (mHost != nullptr)
            mHost->Text("image unloaded");
    }
    std::string mText;
    IRuntimeHost* mHost = nullptr;
} gGlobal;

struct SThreadFarewell
{
    ~SThreadFarewell()
    {
        if (host != nullptr)
            host->Text("thread ended");
    }
    IRuntimeHost* host = nullptr;
};
thread_local SThreadFarewell gFarewell;
thread_local int gCallsOnThisThread = 0;
pthread_mutex_t gStaticMutex = PTHREAD_MUTEX_INITIALIZER;

std::map<std::string, std::vector<int>>& Table()
{
    static std::map<std::string, std::vector<int>> table = {{"b", {2}}, {"a", {1, 1}}};
    return table;
}

/** Locks a new mutex of that type twice. @return what the second lock said. */
int LockTwiceWithType(int inType)
{
    pthread_mutexattr_t attributes;
    pthread_mutex_t mutex;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, inType);
    pthread_mutex_init(&mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    int error = pthread_mutex_lock(&mutex);
    const int second = pthread_mutex_lock(&mutex);
    error |= pthread_mutex_unlock(&mutex);
    if (second == 0)
        error |= pthread_mutex_unlock(&mutex);
    error |= pthread_mutex_destroy(&mutex);
    return error != 0 ? -1 : second;
}

class CRuntimeSubject final : public IRuntimeSubject
{
public:
    void Release() override { delete this; }

    int Sum(int inA, long inB, float inC, double inD, long long inE, short inF, unsigned inG, int inH,
            int inI) override
    {
        return static_cast<int>(inA + inB + static_cast<long>(inC) + static_cast<long>(inD) + inE + inF +
                                inG + inH + inI);
    }
    SRuntimeResult Return(double inValue, long inTag) override
    {
        return {{inValue, inValue * 2, std::sin(inValue), std::sqrt(inValue)}, inTag};
    }
    void Process(float** inInputs, float** outOutputs, int inFrames) override
    {
        if (inFrames < 0)
            throw std::invalid_argument("a negative count");
        for (int channel = 0; channel < 2; ++channel)
            std::transform(inInputs[channel], inInputs[channel] + inFrames, outOutputs[channel],
                           [](float inSample) { return inSample * 0.5F; });
    }
    int CallHost(IRuntimeHost* inHost) override
    {
        bool isPlaying = false;
        const long long position = inHost->Position(&isPlaying);
        inHost->Text(std::to_string(position).c_str());
        return isPlaying ? inHost->Notify(-5'000'000'000L, 0.25F, 1e-3) : -1;
    }
    bool CatchFromHost(IRuntimeHost* inHost) override
    {
        try
        {
            inHost->Notify(0, 0.0F, 0.0);
        }
        catch (...)
        {
            return true;
        }
        return false;
    }
    int ThrowAndCatch(int inThrown, int* outLiveObjects) override
    {
        return ThrowSomethingAndCatchIt(inThrown, *outLiveObjects);
    }
    int CountLostRegisters() override { return LostWithFramePointer() + LostWithoutFramePointer(); }

    void FormatText(double inValue, float inSmallValue, long inWhole, char* outText, int inSize) override;
    int NextOnThisThread() override { return ++gCallsOnThisThread; }
    void TellAtThreadEnd(IRuntimeHost* inHost) override { gFarewell.host = inHost; }
    bool DescribeItself(char* outText, int inSize) override
    {
        Dl_info info{};
        if (dladdr(reinterpret_cast<void*>(&MakeRuntimeSubject), &info) == 0 || info.dli_sname == nullptr)
            return false;
        std::snprintf(outText, static_cast<std::size_t>(inSize), "%s %s", info.dli_fname, info.dli_sname);
        return info.dli_fbase != nullptr;
    }

    void AddUnderStaticMutex(long* ioCounter, int inTimes) override
    {
        for (int i = 0; i < inTimes; ++i)
        {
            pthread_mutex_lock(&gStaticMutex);
            ++*ioCounter;
            pthread_mutex_unlock(&gStaticMutex);
        }
    }
    int LockTwice() override { return LockTwiceWithType(PTHREAD_MUTEX_RECURSIVE); }
    int LockAgainWithErrorCheck() override { return LockTwiceWithType(PTHREAD_MUTEX_ERRORCHECK); }
    int AskWorker(int inQuestion) override;
};

void CRuntimeSubject::FormatText(double inValue, float inSmallValue, long inWhole, char* outText, int inSize)
{
    std::ostringstream text;
    text.precision(2);
    text << std::fixed << inValue << '|' << std::defaultfloat;
    text.precision(6);
    text << inSmallValue << '|' << inWhole << '|' << std::hex << 255 << std::dec << '|' << std::boolalpha
         << true;

    double parsed = 0;
    std::istringstream("  2.5e1 x") >> parsed;
    text << '|' << parsed << '|' << std::stod("0.125") << '|' << std::round(inValue);

    char formatted[64];
    std::snprintf(formatted, sizeof(formatted), "%05d|%.3f|%ld", 42, inValue, inWhole);
    std::string upper = "mixed Case";
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char inLetter) { return static_cast<char>(std::toupper(inLetter)); });
    text << '|' << formatted << '|' << upper << '|';

    for (const auto& [key, values] : Table())
        text << key << values.size();
    const std::function<long()> shared = [whole = std::make_shared<long>(inWhole)] { return *whole; };
    text << '|' << shared() << '|' << gGlobal.mText.size();
    std::snprintf(outText, static_cast<std::size_t>(inSize), "%s", text.str().c_str());
}

int CRuntimeSubject::AskWorker(int inQuestion)
{
    std::mutex guard;
    std::condition_variable changed;
    bool isAsked = false;
    bool isAnswered = false;
    int value = inQuestion;
    std::thread worker(
        [&]
        {
            std::unique_lock lock(guard);
            changed.wait(lock, [&] { return isAsked; });
            value *= 2;
            isAnswered = true;
            changed.notify_one();
        });
    {
        std::unique_lock lock(guard);
        isAsked = true;
        changed.notify_one();
        changed.wait(lock, [&] { return isAnswered; });
    }
    worker.join();
    return value;
}
} // namespace

extern "C" __attribute__((visibility("default"))) IRuntimeSubject* MakeRuntimeSubject(IRuntimeHost* inHost)
{
    gGlobal.mHost = inHost;
    return new CRuntimeSubject; // the caller's, until Release()
}
