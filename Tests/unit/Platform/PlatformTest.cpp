#include "Platform/ModulePath.h"
#include "Platform/PluginImage.h"
#include "Platform/PointerState.h"
#include "Tests/doubles/ScriptedModule.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace
{
TEST(PluginImage, ExecutableOutlivesItsObjectUntilItIsUnloaded)
{
    const std::string path = ScriptedModule::FileOf("scripted_plugin_no_entry.so");
    {
        const auto image = OpenPluginImage(path.c_str());
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->FindSymbol("GetPluginScript"), nullptr); // not loaded yet
        ASSERT_TRUE(image->LoadExecutable());
        EXPECT_NE(image->FindSymbol("GetPluginScript"), nullptr);
        EXPECT_EQ(image->FindSymbol("VSTPluginMain"), nullptr);
        image->Unload();
        EXPECT_FALSE(ScriptedModule::IsLoaded(path));
        ASSERT_TRUE(image->LoadExecutable());
    }
    EXPECT_TRUE(ScriptedModule::IsLoaded(path));
}

TEST(ModulePath, PathThatDoesNotFitIsRefusedAndNothingIsWrittenBehindTheBuffer)
{
    const ScriptedModule module;
    const auto image = OpenPluginImage(module.Path());
    ASSERT_TRUE(image != nullptr && image->LoadExecutable());
    const void* const address = image->FindSymbol("VSTPluginMain");
    const std::string path = module.Path();
    std::vector<char> buffer(path.size() + 3, '#');
    EXPECT_TRUE(FindModulePath(address, std::span(buffer).first(path.size() + 1)));
    EXPECT_EQ(std::string(buffer.data()), path);
    EXPECT_EQ(buffer[path.size() + 1], '#');
    buffer.assign(buffer.size(), '#');
    EXPECT_FALSE(FindModulePath(address, std::span(buffer).first(path.size())));
    EXPECT_STREQ(buffer.data(), "");
    EXPECT_EQ(buffer[path.size()], '#');
    EXPECT_FALSE(FindModulePath(address, {}));
    EXPECT_FALSE(FindModulePath(nullptr, buffer));
    image->Unload();
}

TEST(PointerState, NothingIsPressedWithoutADisplayServer)
{
    for (const char* const display : {"", ":97", "no display"})
    {
        SCOPED_TRACE(display);
        setenv("DISPLAY", display, 1);
        const SPointerState state = GetPointerState();
        EXPECT_FALSE(state.mShift || state.mControl || state.mCommand || state.mOption ||
                     state.mPrimaryButton || state.mSecondaryButton);
    }
}
} // namespace
