#include "Source/plugins/CVst2Host.h"
#include "Tests/doubles/ScriptedModule.h"
#include "Tools/vst2driver/CDrivenPlugin.h"

#include <gtest/gtest.h>

namespace
{
TEST(DrivenPlugin, EachCallIsAnsweredAsAModuleAnswersItUnlessTheUserAnswers)
{
    constexpr std::int32_t kOwn = 50; // answered by the user
    ScriptedModule module;
    CVst2Host host;
    ASSERT_NE(host.LoadPlugin(module.Path()), nullptr);
    AEffect& inModule = module.Script().mInstances[0]->Effect();
    audioMasterCallback driver = nullptr;
    module.Script().mOnEntry = [&](audioMasterCallback inHost) { driver = inHost; };
    CDrivenPlugin first(0, [](const SHostCall& inCall)
                        { return inCall.mOpcode == kOwn ? std::optional<VstIntPtr>(7) : std::nullopt; });
    ASSERT_EQ(first.Open(module.Path(), 48000.0F), "");
    CDrivenPlugin second(2300);
    ASSERT_EQ(second.Open(module.Path(), 48000.0F), ""); // called last: the first is found all the same
    for (std::int32_t opcode = -1; opcode <= 60; ++opcode)
    {
        SCOPED_TRACE(opcode);
        char modules[64] = "";
        VstIntPtr expected = CVst2Host::AudioMasterCallback(&inModule, opcode, 0, 0, modules, 0.0F);
        expected = opcode == kOwn ? 7 : expected;
        expected = opcode == audioMasterGetTime ? reinterpret_cast<VstIntPtr>(&first.Time()) : expected;
        char text[64] = "";
        EXPECT_EQ(driver(&first.Effect(), opcode, 0, 0, text, 0.0F), expected);
        EXPECT_STREQ(text, modules);
        char unmatched[64] = "";
        EXPECT_EQ(driver(nullptr, opcode, 0, 0, unmatched, 0.0F), AnswerUnmatchedCall(opcode, modules, 2300));
        EXPECT_STREQ(unmatched, modules);
    }
}
} // namespace
