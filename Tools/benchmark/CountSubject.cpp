#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/benchmark/CBenchRig.h"
#include "Tools/benchmark/CEmptyPluginCalls.h"
#include "Tools/benchmark/CountMarks.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

namespace
{
constexpr int kCalls = 200;

/** Has it counted under the name of what it is and how often one call of `inCall` does that. */
template <class Call>
void Count(const std::string& inName, int inTimes, Call inCall)
{
    inCall(); // symbols are bound and arrays grow in the first one
    BeginCount();
    inCall();
    EndCount(inName + " calls=" + std::to_string(inTimes));
}

/** As above for what is counted one by one. */
template <class Call>
void CountEach(const std::string& inName, Call inCall)
{
    Count(
        inName, kCalls,
        [&]
        {
            for (int i = 0; i < kCalls; ++i)
                inCall();
        });
}

/** @param inAge blocks ahead of the last count; 0 for none of it. */
void CountRendering(int inAge)
{
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    for (const int frames : {16, 64, 1024})
    {
        rig.SetBlock(frames, 0);
        CountEach("render frames=" + std::to_string(frames) + " packets=0", [&] { rig.Render(); });
    }
    for (const std::size_t packets : {1U, 10U, 100U, 300U})
    {
        rig.SetBlock(64, packets);
        CountEach("render frames=64 packets=" + std::to_string(packets), [&] { rig.Render(); });
    }
    if (inAge == 0)
        return;
    rig.SetBlock(64, 0);
    for (int i = 0; i < inAge; ++i)
        rig.Render();
    CountEach("render age=" + std::to_string(inAge), [&] { rig.Render(); });
}

void CountPosting()
{
    constexpr int kPackets = 1000;
    setenv(kEmptyPluginSends, std::to_string(kPackets).c_str(), 1);
    CBenchRig rig(kAllFeaturesModule, kEmptyPlugin);
    unsetenv(kEmptyPluginSends);
    Count("post one packet of 1000", kPackets, [&] { rig.Render(); });
}

void CountFeatures()
{
    const auto count = [](const char* inFeatures, const std::filesystem::path& inModule)
    {
        CBenchRig rig(inModule, kEmptyPlugin);
        rig.SetBlock(64, 0);
        CountEach(std::string("render features=") + inFeatures + " packets=0", [&] { rig.Render(); });
    };
    count("TIME", TIME_MODULE);
    count("ALL", kAllFeaturesModule);
    CountPosting();
}

void CountManyInstances()
{
    constexpr int kInstances = 512;
    CBenchRig rig(kPlainModule, kEmptyPlugin, kInstances);
    Count("render instances=512", kInstances, [&] { rig.Render(); });
}

void CountCallbacks(int inInstances)
{
    CBenchRig rig(kPlainModule, kEmptyPlugin, inInstances);
    CEmptyPluginCalls plugin(rig.Bundle().SourceVst());
    Count("callback instances=" + std::to_string(inInstances), inInstances,
          [&]
          {
              for (int i = 0; i < inInstances; ++i)
                  plugin.AskForTime(i);
          });
}

void CountParameters()
{
    constexpr int kParameters = 1000;
    setenv(kEmptyPluginParameters, std::to_string(kParameters).c_str(), 1);
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    unsetenv(kEmptyPluginParameters);
    CountEach("render parameters=1000", [&] { rig.Render(); });
    double value = 0.0;
    CountEach(
        "update parameters=1000",
        [&]
        {
            value = value < 0.5 ? 0.75 : 0.25;
            (void)rig.Instance().UpdateParameter("00500", value); // checked by the tests
        });
    CountEach("coefficients clean", [&] { (void)rig.Instance().FinishUpdates(); });
}

/** As from the render call: no edit has begun. So few that none is put off until others are answered. */
void CountAutomation()
{
    setenv(kEmptyPluginParameters, "1", 1);
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    unsetenv(kEmptyPluginParameters);
    CEmptyPluginCalls plugin(rig.Bundle().SourceVst());
    constexpr int kReports = 10;
    const auto count = [&](const char* inName)
    {
        Count(inName, kReports,
              [&]
              {
                  for (int i = 0; i < kReports; ++i)
                      plugin.Automate(0, 0);
              });
        (void)rig.Instance().RunCycle(); // answers them; checked by the tests
    };
    count("automate editor=none");
    if (!rig.Instance().OpenGUI())
        throw std::runtime_error("the editor does not start");
    int view = 0;
    CHostViewContainer& container = rig.Instance().Host().ViewContainer();
    container.SetView(1, &view);
    if (rig.Instance().GUI()->SetViewContainer(&container) != kAAX_Success)
        throw std::runtime_error("the editor does not open");
    count("automate editor=open");
    (void)rig.Instance().GUI()->SetViewContainer(nullptr); // always succeeds
}

void CountCreation()
{
    const auto count =
        [](const char* inParameters, const char* inFeatures, const std::filesystem::path& inModule)
    {
        setenv(kEmptyPluginParameters, inParameters, 1);
        CBenchRig rig(inModule, kEmptyPlugin);
        Count(std::string("create and delete ") + inFeatures + "parameters=" + inParameters, 1,
              [&] {
                  (void)CInstance::Create(rig.Module(), CBenchRig::kRate);
              }); // the rig has one: it can be made
        unsetenv(kEmptyPluginParameters);
    };
    count("100", "", kPlainModule);
    count("1000", "", kPlainModule);
    count("1000", "features=ALL ", kAllFeaturesModule);
}

/** The text of a value through the module, beside what the plug-in's own two calls take. */
void CountTexts()
{
    setenv(kEmptyPluginParameters, "1", 1);
    CBenchRig rig(kAllFeaturesModule, kEmptyPlugin);
    unsetenv(kEmptyPluginParameters);
    const CEmptyPluginCalls plugin(rig.Bundle().SourceVst());
    CHostString text;
    CountEach(
        "text of a value features=ALL",
        [&] { (void)rig.Instance().Parameters().GetParameterValueString("00000", &text, 31); });
    CountEach("plain text of a value", [&] { plugin.WriteText(0, 0); });
    if (text.Text() != "0.50 dB")
        throw std::runtime_error("the text is not the plug-in's");
}

/** Saving and loading, beside one plain copy of as many bytes: what is copied, the C library copies. */
void CountState()
{
    constexpr std::size_t kBytes = std::size_t{64} << 20;
    setenv(kEmptyPluginChunkBytes, std::to_string(kBytes).c_str(), 1);
    CBenchRig rig(kPlainModule, kEmptyPlugin);
    unsetenv(kEmptyPluginChunkBytes);
    AAX_IACFEffectParameters& instance = rig.Instance().Parameters();
    const AAX_CTypeID id = AAX_FourCharCode("0001");
    std::uint32_t size = 0;
    if (instance.GetChunkSize(id, &size) != kAAX_Success || size < kBytes)
        throw std::runtime_error("the plug-in's chunk is not offered");
    CStateChunk chunk(size);
    Count("save bytes=67108864", 1, [&] { (void)instance.GetChunk(id, &chunk.Record()); });
    std::vector<std::byte> copy(kBytes);
    Count(
        "plain copy bytes=67108864", 1, [&] { std::memcpy(copy.data(), chunk.Data().data(), kBytes); });
    Count("load bytes=67108864", 1, [&] { (void)instance.SetChunk(id, &chunk.Record()); });
}
} // namespace

// With the argument `render` only a young instance's blocks, for what counts slowly.
int main(int inCount, char** inArguments)
{
    try
    {
        if (inCount > 1 && inArguments[1] == std::string_view("render"))
        {
            CountRendering(0);
            return 0;
        }
        CountRendering(100000);
        CountFeatures();
        CountManyInstances();
        CountParameters();
        CountAutomation();
        CountCallbacks(1);
        CountCallbacks(64);
        CountCallbacks(1000);
        CountCreation();
        CountTexts();
        CountState();
        return 0;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
