#include "Platform/PointerState.h"
#include "Source/plugins/IEditHost.h"
#include "Source/plugins/IMainHost.h"
#include "Tests/unit/Source/plugins/LoadedPlugin.h"

#include <cstdlib>
#include <thread>

// In place of the window system: what is held down, and how often somebody asked.
static SPointerState gHeld;
static int gQuestions = 0;
SPointerState GetPointerState() noexcept
{
    ++gQuestions;
    return gHeld;
}

namespace
{
class CListener : public IMainHost, public IEditHost
{
public:
    void SetHostParameter(long inIndex, float inValue) override
    {
        mLog.push_back("set " + std::to_string(inIndex) + " " + std::to_string(inValue));
        if (mThrows)
            throw std::runtime_error("listener");
    }
    void UpdateParameters() override { mLog.emplace_back("update"); }
    std::int32_t HandleParameterMouseDown(long inIndex, unsigned long inModifiers) override
    {
        return Gesture("down ", inIndex, inModifiers);
    }
    std::int32_t HandleParameterMouseDrag(long inIndex, unsigned long inModifiers) override
    {
        return Gesture("drag ", inIndex, inModifiers);
    }
    std::int32_t HandleParameterMouseUp(long inIndex, unsigned long inModifiers) override
    {
        return Gesture("up ", inIndex, inModifiers);
    }

    Lines mLog;
    bool mThrows = false;

private:
    std::int32_t Gesture(const std::string& inWhat, long inIndex, unsigned long inModifiers)
    {
        mLog.push_back(inWhat + std::to_string(inIndex).append(" ").append(std::to_string(inModifiers)));
        return -20009;
    }
};

class HostCallback : public LoadedPlugin
{
protected:
    void SetUp() override
    {
        unsetenv("DISPLAY"); // no server: only the bit that is always set
        Script().mParameters = {0.25F, 0.5F};
        mPlugin = &Load();
    }
    ScriptedEffect& Effect() { return *Script().mInstances.front(); }
    void Listen()
    {
        mHost.SetMainListener(&mListener);
        mHost.SetEditListener(&mListener);
    }

    CVst2Plugin* mPlugin = nullptr;
    CListener mListener;
};

TEST_F(HostCallback, EveryOpcodeHasItsAnswer)
{
    Listen();
    Effect().Effect().numPrograms = 2;
    for (std::int32_t opcode = -1; opcode <= 60; ++opcode)
    {
        SCOPED_TRACE(opcode);
        VstIntPtr expected = 0;
        expected = opcode == audioMasterVersion ? 2400 : expected;
        expected = opcode == audioMasterUpdateDisplay ? 1 : expected;
        expected = opcode == audioMasterGetTime ? reinterpret_cast<VstIntPtr>(&mHost.TimeInfo()) : expected;
        char text[64] = "";
        EXPECT_EQ(Effect().CallHost(opcode, 1, text), expected);
        EXPECT_STREQ(text, opcode == audioMasterGetProductString ? "IsmAaxVstHost" : "");
    }
    EXPECT_EQ(mListener.mLog, (Lines{"set 1 0.500000", "drag 1 4", "update", "down 1 4", "up 1 4"}));
    EXPECT_TRUE(mPlugin->AcceptsMidi());
    EXPECT_EQ(Effect().CallHost(audioMasterGetProductString, 0, nullptr), 0);
}

TEST_F(HostCallback, AutomationTellsThePluginsOwnValueToAllThreeListeners)
{
    CListener own;
    Listen();
    mPlugin->SetAutomationListener(&own);
    EXPECT_EQ(Effect().CallHost(audioMasterAutomate, 0, nullptr, 17.0F), 0);
    EXPECT_EQ(mListener.mLog, (Lines{"set 0 0.250000", "drag 0 4"}));
    EXPECT_EQ(own.mLog, (Lines{"set 0 0.250000"}));
}

TEST_F(HostCallback, KeysAreAskedForInAGestureThatIsSeenOnTheListenersThreadOnly)
{
    Listen();
    const auto questionsOf = [&](std::int32_t inOpcode)
    {
        const int before = gQuestions;
        EXPECT_EQ(Effect().CallHost(inOpcode, 1), 0);
        return gQuestions - before;
    };
    gHeld.mShift = true;
    EXPECT_EQ(questionsOf(audioMasterAutomate), 0); // perhaps from the render call
    EXPECT_EQ(questionsOf(audioMasterBeginEdit), 1);
    gHeld.mShift = false;
    EXPECT_EQ(questionsOf(audioMasterAutomate), 1);
    gHeld.mCommand = true;
    std::thread(
        [&]
        {
            for (const auto opcode : {audioMasterBeginEdit, audioMasterAutomate, audioMasterEndEdit})
                EXPECT_EQ(questionsOf(opcode), 0);
        })
        .join();
    EXPECT_EQ(questionsOf(audioMasterEndEdit), 1);
    EXPECT_EQ(questionsOf(audioMasterAutomate), 0);
    gHeld = {};
    mHost.RefreshMouseMods();
    EXPECT_EQ(questionsOf(audioMasterAutomate), 0);
    mHost.SetGestureViewer(false);
    gHeld.mShift = true;
    EXPECT_EQ(questionsOf(audioMasterBeginEdit), 0);
    gHeld = {};
    std::erase_if(mListener.mLog, [](const std::string& inLine) { return inLine.starts_with("set"); });
    EXPECT_EQ(mListener.mLog, (Lines{"drag 1 4", "down 1 5", "drag 1 4", "down 1 4", "drag 1 4", "up 1 4",
                                     "up 1 6", "drag 1 6", "drag 1 4", "down 1 4"}));
}

TEST_F(HostCallback, CallsWithoutListenersDoNothingAndKeepTheirAnswers)
{
    Effect().Effect().numPrograms = 2;
    for (const auto opcode : {audioMasterAutomate, audioMasterBeginEdit, audioMasterEndEdit})
        EXPECT_EQ(Effect().CallHost(opcode, 0), 0);
    EXPECT_EQ(Effect().CallHost(audioMasterUpdateDisplay), 1);
    Listen();
    Effect().Effect().numPrograms = 1;
    EXPECT_EQ(Effect().CallHost(audioMasterUpdateDisplay), 1);
    EXPECT_TRUE(mListener.mLog.empty());
}

TEST_F(HostCallback, ExceptionOfAListenerStaysOnThisSide)
{
    Listen();
    mListener.mThrows = true;
    EXPECT_EQ(Effect().CallHost(audioMasterAutomate, 0), 0);
    EXPECT_EQ(mListener.mLog.size(), 1U);
}

TEST_F(HostCallback, CallerOfAnotherHostIsNotActedOn)
{
    CVst2Host other;
    AEffect& effect = Effect().Effect();
    EXPECT_EQ(other.OnAudioMasterCallback(&effect, audioMasterWantMidi, 0, 0, nullptr, 0.0F), 0);
    EXPECT_FALSE(mPlugin->AcceptsMidi());
    EXPECT_EQ(other.OnAudioMasterCallback(&effect, audioMasterVersion, 0, 0, nullptr, 0.0F), 2400);
    EXPECT_EQ(mHost.OnAudioMasterCallback(&effect, audioMasterWantMidi, 0, 0, nullptr, 0.0F), 0);
    EXPECT_TRUE(mPlugin->AcceptsMidi());
}

TEST_F(HostCallback, CallInsideTheEntryIsUnmatched)
{
    VstIntPtr version = -1;
    VstIntPtr time = -1;
    char product[64] = "";
    Script().mOnEntry = [&](audioMasterCallback inHost)
    {
        version = inHost(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F);
        time = inHost(nullptr, audioMasterGetTime, 0, 0, nullptr, 0.0F);
        EXPECT_EQ(inHost(nullptr, audioMasterGetProductString, 0, 0, product, 0.0F), 0);
    };
    ASSERT_NE(mHost.LoadPlugin(mModule.Path()), nullptr);
    EXPECT_EQ(version, 0);
    EXPECT_EQ(time, 0);
    EXPECT_STREQ(product, "IsmAaxVstHost");
}

TEST_F(HostCallback, UnmatchedCallsAreAnsweredZeroButForTheProductsVersion)
{
    AEffect stranger{};
    for (std::int32_t opcode = -1; opcode <= 60; ++opcode)
    {
        SCOPED_TRACE(opcode);
        char text[64] = "";
        EXPECT_EQ(CVst2Host::AudioMasterCallback(&stranger, opcode, 0, 0, text, 0.0F), 0);
        EXPECT_STREQ(text, opcode == audioMasterGetProductString ? "IsmAaxVstHost" : "");
        EXPECT_EQ(AnswerUnmatchedCall(opcode, text, 2400), opcode == audioMasterVersion ? 2400 : 0);
    }
    pVst2Host.store(nullptr);
    char text[64] = "";
    EXPECT_EQ(AnswerUnmatchedCall(audioMasterGetProductString, text, 0), 0);
    EXPECT_STREQ(text, "");
}
} // namespace
