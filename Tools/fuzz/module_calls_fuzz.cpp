#include "Tests/doubles/ScriptedModule.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/fuzz/CFuzzedInstance.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace
{
/** The built module around the scripted plug-in, kept open for every run. */
struct SSubject
{
    SSubject()
    {
        unsetenv("DISPLAY"); // a gesture would ask the server for the keys that are held
        BePolite();
        auto module = CModule::Open(FUZZED_MODULE, mLog);
        if (!module)
        {
            (void)std::fprintf(stderr, "%s\n",
                               module.Problem().mSentence.c_str()); // there is nothing to do without
            std::abort();
        }
        mModule = std::move(*module);
    }
    SPluginScript& Script() { return mScript.Script(); }
    void BePolite()
    {
        Script().Reset();
        Script().mShape.numInputs = Script().mShape.numOutputs = 2;
        Script().mShape.numPrograms = 2;
        Script().mShape.flags = effFlagsProgramChunks | effFlagsHasEditor;
        Script().mInputPins = Script().mOutputPins = {{"Main", kVstPinIsStereo}};
        Script().mParameters = {0.25F, 0.5F, 0.75F};
        Script().mBankChunk = {1, 2, 3, 4};
        Script().mResults[effCanDo] = 1;
    }

    CHostLog mLog;
    ScriptedModule mScript{FUZZED_PLUGIN};
    std::unique_ptr<CModule> mModule;
};

/** The plug-in calls its host, becomes rude, or looks otherwise in its next instances. */
void PluginStep(SPluginScript& ioScript, CFuzzInput& ioInput)
{
    const std::int32_t opcode = ioInput.Choice(78);
    switch (ioInput.Choice(8))
    {
    case 0: ioScript.mFaults.insert(opcode); break;
    case 1: ioScript.mFaults.clear(); break;
    case 2:
    {
        // A size of more memory than there is, nobody could see through: that one is negative.
        const std::uint64_t sign = opcode == effGetChunk ? std::uint64_t{1} << 63 : 0;
        ioScript.mResults[opcode] = static_cast<VstIntPtr>(ioInput.Number(8) | sign);
        break;
    }
    case 3:
        ioScript.mHooks[opcode] =
            [call = static_cast<std::int32_t>(ioInput.Choice(50)),
             index = static_cast<std::int8_t>(ioInput.Byte())](ScriptedEffect& ioEffect, const SDispatch&)
        {
            std::array<char, 64> text{};
            (void)ioEffect.CallHost(call, index, text.data()); // to come back
        };
        break;
    case 6:
        ioScript.mReportsSets = ioInput.Yes();
        ioScript.mSteps = ioInput.Choice(16);
        ioScript.mCoupled[ioInput.Choice(3)] = {ioInput.Choice(3), ioInput.Choice(3)};
        break;
    case 7:
    {
        const SScriptedPin pin{"Pin", ioInput.Yes() ? kVstPinIsStereo : 0};
        const std::vector<SScriptedPin> pins(ioInput.Choice(6), pin);
        ioScript.mShapes = {{ioInput.Choice(6), ioInput.Choice(6), pins, pins, ioInput.Choice(3) - 1}};
        break;
    }
    default:
        if (!ioScript.mInstances.empty())
        {
            std::array<char, 64> text{};
            ScriptedEffect& effect = *ioScript.mInstances[ioInput.Byte() % ioScript.mInstances.size()];
            (void)effect.CallHost(opcode % 50, static_cast<std::int8_t>(ioInput.Byte()),
                                  text.data()); // as above
        }
        break;
    }
}

/** The exported functions, outside the order in which a host calls them. */
void ModuleStep(CModule& ioModule, CHostLog& ioLog, CFuzzInput& ioInput)
{
    const SModuleEntries& entries = ioModule.Entries();
    CHost other(ioLog);
    std::uint64_t version = 0;
    void* factory = nullptr;
    IACFComponentDefinition* component = nullptr;
    switch (ioInput.Choice(7))
    {
    case 0: (void)entries.mStartup(ioInput.Yes() ? ioModule.Host().Unknown() : nullptr); break;
    case 1: (void)entries.mShutdown(ioModule.Host().Unknown()); break;
    case 2: (void)entries.mCanUnloadNow(nullptr); break;
    case 3: (void)entries.mGetSDKVersion(ioInput.Yes() ? &version : nullptr); break;
    case 4:
        (void)entries.mGetClassFactory(nullptr, IID_IACFUnknown, IID_IACFUnknown,
                                       ioInput.Yes() ? &factory : nullptr);
        break;
    case 5: (void)entries.mRegisterComponent(nullptr, 0, ioInput.Yes() ? &component : nullptr); break;
    default:
    {
        IACFPluginDefinition* definition = nullptr;
        (void)entries.mRegisterPlugin(other.Unknown(),
                                      ioInput.Yes() ? &definition : nullptr); // refused or not
        if (definition != nullptr)
            definition->Release();
        break;
    }
    }
}

/** Of the host, by the place of the instance. */
constexpr std::array kAnswers{EAnswers::Late, EAnswers::AtOnce, EAnswers::Last};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inData, std::size_t inSize)
{
    static SSubject subject;
    CFuzzInput input({inData, inSize});
    {
        std::array<std::unique_ptr<CFuzzedInstance>, kAnswers.size()> instances;
        while (!input.AtEnd())
        {
            const std::uint8_t what = input.Choice(16);
            const std::uint8_t place = input.Choice(instances.size());
            auto& instance = instances[place];
            if (what == 0)
                PluginStep(subject.Script(), input);
            else if (what == 1)
                ModuleStep(*subject.mModule, subject.mLog, input);
            else if (what == 2)
                instance.reset();
            else if (instance != nullptr)
                instance->Step(input);
            else
                instance = std::make_unique<CFuzzedInstance>(subject.mModule->Effect(), subject.mLog,
                                                             kAnswers[place]);
        }
    }
    if (subject.mModule->LiveObjects() != 0)
        std::abort();
    subject.BePolite();
    subject.mLog.Clear();
    return 0;
}
