#include "Source/SourceVstPath.h"

#include <gtest/gtest.h>
#include <string>

namespace
{
std::string PathOf(const std::string& inModule)
{
    std::string path(kSourceVstPathSize, '#');
    CreateSourceVstPath(inModule.c_str(), path.data());
    return path.c_str();
}
} // namespace

TEST(SourceVstPath, TwoComponentsAreCutAndWithoutThemThereIsNoPath)
{
    EXPECT_EQ(PathOf("/p/My.aaxplugin/Contents/MacOS/My"), "/p/My.aaxplugin/Contents/Resources/source.vst");
    EXPECT_EQ(PathOf("/MacOS/My"), "/Resources/source.vst");
    EXPECT_EQ(PathOf("Contents/MacOS/My"), "Contents/Resources/source.vst");
    EXPECT_EQ(PathOf("My"), "");
    EXPECT_EQ(PathOf("MacOS/My"), "");
    EXPECT_EQ(PathOf(""), "");
}

TEST(SourceVstPath, APathThatDoesNotFitIsEmptyAndOneThatJustFitsIsWhole)
{
    const std::string tail = "/Resources/source.vst";
    const std::string fits = "/" + std::string(kSourceVstPathSize - tail.size() - 2, 'a');
    EXPECT_EQ(PathOf(fits + "/M/M"), fits + tail);
    EXPECT_EQ(PathOf(fits + "a/M/M"), "");
    EXPECT_EQ(PathOf(fits + std::string(10000, 'a') + "/M/M"), "");
}
