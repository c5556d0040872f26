#pragma once
#include "Interfaces/AAX/AAX_IACFEffectGUI.h"
#include "Interfaces/AAX/AAX_IACFEffectParameters.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/aaxhost/player/SRenderCall.h"
#include "Tools/support/COutcome.h"

#include <memory>
#include <string>
#include <vector>

class CModule;

/** What a host can ask an instance about one of its parameters; empty or 0 where it does not answer. */
struct SParameterInfo
{
    std::string mID;
    std::string mName;
    std::string mShortName; // for a display of 8 characters
    double mDefault = 0.0;  // normalized
    double mValue = 0.0;    // normalized
    std::string mValueText;
    std::int32_t mSteps = 0;
    bool mDiscrete = false; // it has no values between the steps
    bool mAutomatable = false;
};

/** How a host deals with one of its instances. */
struct SInstanceOptions
{
    EAnswers mAnswers = EAnswers::Late;  // to what the instance asks for
    bool mBeginsWithCoefficients = true; // else the first `FinishUpdates` has them sent
    std::string mStems{};                // of the component, as `NameOfStems` says; empty: the first's
    bool mTellsValues = false;           // at any time, and not only once it was asked for its state
};

/**
 * One instance of a module's first effect: its effect parameters, on demand its editor, and its render calls.
 *
 * Threads: the main thread, but for Render, which may be called on one other. The module and the log must
 * outlive the instance.
 */
class CInstance
{
public:
    /** Makes the effect parameters, initialises them and has them send their coefficients once. */
    static COutcome<std::unique_ptr<CInstance>> Create(CModule& inModule, double inSampleRate,
                                                       const SInstanceOptions& inOptions = {});
    CInstance(const CInstance&) = delete;
    CInstance& operator=(const CInstance&) = delete;
    /** Ends the editor, then the parameters. */
    ~CInstance();

    CInstanceHost& Host() noexcept { return *mHost; }
    AAX_IACFEffectParameters& Parameters() noexcept { return *mParameters.Get(); }
    /** Null until `OpenGUI`. */
    AAX_IACFEffectGUI* GUI() noexcept { return mGUI.Get(); }
    const SComponent& Component() const noexcept { return mComponent; }
    const SInstanceOptions& Options() const noexcept { return mOptions; }

    /** Makes the editor and initialises it; it gets no view container yet. */
    COutcome<SDone> OpenGUI();
    void CloseGUI();

    std::vector<SParameterInfo> ListParameters();
    /** The identifier of the master bypass; empty where there is none. */
    std::string MasterBypassID();
    bool HasParameter(const std::string& inID);
    /**
     * What a host does once in each cycle of its main thread: answers what the module asked for, then has it
     * send its coefficients where there was anything. Nothing else here answers, but for a host at once.
     * @return kAAX_Success, or what the generation of the coefficients answered.
     */
    AAX_Result RunCycle();

    /** As a control of the host does it: the module takes the value and asks the host for it. */
    AAX_Result SetParameter(const std::string& inID, double inNormalized);
    /** As automation does it: updates the value. The coefficients follow with `FinishUpdates`. */
    AAX_Result UpdateParameter(const std::string& inID, double inNormalized);
    /** Has the module send its coefficients after one or more updates. */
    AAX_Result FinishUpdates();

    std::int32_t InputChannels() const noexcept { return mInputChannels; }
    /** Channels of the main output stem, which come first. */
    std::int32_t MainOutputChannels() const noexcept { return mMainOutputChannels; }
    /** The main channels and those of the auxiliary stems. */
    std::int32_t OutputChannels() const noexcept { return mOutputChannels; }

    /** Prepares a render call; the module fills its private data here. */
    std::unique_ptr<SRenderCall> MakeRenderCall();
    /** Calls the process procedure for this instance. What the module posts to a node is that of this call.
     * Allocates nothing of its own. */
    void Render(SRenderCall& ioCall);
    /** The registered procedure, for calls with several contexts. */
    AAX_CProcessProc ProcessProc() const noexcept { return mProcess; }

private:
    explicit CInstance(CModule& inModule);
    COutcome<SDone> Begin(double inSampleRate, const SInstanceOptions& inOptions);

    CModule& mModule;
    SInstanceOptions mOptions;
    SComponent mComponent;
    AAX_CProcessProc mProcess = nullptr;
    std::int32_t mInputChannels = 0;
    std::int32_t mMainOutputChannels = 0;
    std::int32_t mOutputChannels = 0;
    std::unique_ptr<CInstanceHost> mHost; // the objects below hold references to it
    ACFPtr<AAX_IACFEffectParameters> mParameters;
    ACFPtr<AAX_IACFEffectGUI> mGUI;
};
