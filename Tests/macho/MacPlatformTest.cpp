#include "Tests/macho/TestBundles.h"
#include "Tests/macho/subjects/PlatformSubject.h"
#include "Tools/macho_loader/CrashTrace.h"
#include "Tools/macho_loader/doubles/CMacSystem.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace
{
using Lines = std::vector<std::string>;

const std::string kSubjectFile = ExecutableIn(TestBundle("platform_subject.bundle"));
const std::string kPlugin = TestBundle("scripted_plugin.vst");

/** A system with the project's macOS sources loaded into it. */
class CMacWithSubject
{
public:
    CMacWithSubject()
    {
        InstallCrashTrace();
        CMachOImage& image = mSystem.Loader().Load(kSubjectFile);
        for (SubjectPtr* subject : {&mSubject, &mOther})
            subject->reset(ImportFrom<decltype(MakePlatformSubject)>(image, "MakePlatformSubject")());
    }
    IPlatformSubject* operator->() { return mSubject.get(); }
    /** A second one, with an image and a plug-in of its own, in the same module. */
    IPlatformSubject* Other() { return mOther.get(); }
    Lines Calls() { return mSystem.Calls().Take(); }
    bool IsLoaded(const std::string& inBundle) { return mSystem.Loader().IsLoaded(ExecutableIn(inBundle)); }

    CMacSystem mSystem;

private:
    using SubjectPtr = std::unique_ptr<IPlatformSubject, SReleaseSubject>;
    SubjectPtr mSubject;
    SubjectPtr mOther;
};

template <class... Others>
Lines Joined(Lines inFirst, const Others&... inOthers)
{
    (inFirst.insert(inFirst.end(), inOthers.begin(), inOthers.end()), ...);
    return inFirst;
}

Lines Opening(const std::string& inPath)
{
    return {
        "CFStringCreateWithCString " + inPath + " -> string1",
        "CFURLCreateWithFileSystemPath string1 -> url1",
        "CFRelease string1",
        "CFBundleCreate url1 -> bundle1",
        "CFRelease url1",
    };
}
const Lines kLoading = {"CFBundleLoadExecutable bundle1"};
const Lines kAskingForFirstEntry = {
    "CFStringCreateWithCString VSTPluginMain -> string2",
    "CFBundleGetFunctionPointerForName bundle1 VSTPluginMain",
    "CFRelease string2",
};
const Lines kAskingForSecondEntry = {
    "CFStringCreateWithCString main_macho -> string3",
    "CFBundleGetFunctionPointerForName bundle1 main_macho",
    "CFRelease string3",
};
const Lines kGivingUp = {"CFBundleUnloadExecutable bundle1", "CFRelease bundle1"};

TEST(MacPlugin, ItsBundleIsOpenedInOrderAndKeptUntilItIsFreed)
{
    CMacWithSubject mac;
    ASSERT_TRUE(mac->LoadPlugin(kPlugin.c_str()));
    EXPECT_EQ(mac.Calls(), Joined(Opening(kPlugin), kLoading, kAskingForFirstEntry));
    EXPECT_STREQ(mac->PluginName(), "Scripted");
    EXPECT_EQ(mac.mSystem.Objects().Count(), 1U);

    mac->FreePlugin();
    EXPECT_EQ(mac.Calls(), kGivingUp);
    EXPECT_FALSE(mac.IsLoaded(kPlugin));
}

TEST(MacPlugin, OneThatEndsUnfreedUsesItsCodeForEver)
{
    CMacWithSubject mac;
    ASSERT_TRUE(mac->LoadPlugin(kPlugin.c_str()));
    (void)mac.Calls(); // the end counts
    mac->DestroyPlugin();
    EXPECT_EQ(mac.Calls(), Lines());
    ASSERT_TRUE(mac.Other()->LoadPlugin(kPlugin.c_str()));
    (void)mac.Calls(); // as above
    mac.Other()->FreePlugin();
    EXPECT_EQ(mac.Calls(), Lines{"CFRelease bundle1"});
    EXPECT_TRUE(mac.IsLoaded(kPlugin));
    EXPECT_EQ(mac.mSystem.Objects().Count(), 1U);
}

TEST(MacPlugin, TheSecondEntryNameIsTriedAfterTheFirst)
{
    CMacWithSubject mac;
    const std::string plugin = TestBundle("scripted_plugin_main_macho.vst");
    ASSERT_TRUE(mac->LoadPlugin(plugin.c_str()));
    EXPECT_EQ(mac.Calls(), Joined(Opening(plugin), kLoading, kAskingForFirstEntry, kAskingForSecondEntry));
    EXPECT_STREQ(mac->PluginName(), "Scripted");
}

TEST(MacPlugin, OneThatCannotBeUsedIsUnloadedAndReleased)
{
    struct SRow
    {
        const char* mBundle;
        Lines mAsking;
    };
    const SRow rows[] = {
        {"scripted_plugin_no_entry.vst", Joined(kAskingForFirstEntry, kAskingForSecondEntry)},
        // Its exception must be gone before the code of the exception's type is.
        {"scripted_plugin_throwing.vst", kAskingForFirstEntry},
        {"faulty_ReturnNull.vst", kAskingForFirstEntry},
        {"faulty_WrongMagic.vst", kAskingForFirstEntry},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mBundle);
        CMacWithSubject mac;
        const std::string plugin = TestBundle(row.mBundle);
        EXPECT_FALSE(mac->LoadPlugin(plugin.c_str()));
        EXPECT_EQ(mac.Calls(), Joined(Opening(plugin), kLoading, row.mAsking, kGivingUp));
        EXPECT_EQ(mac.mSystem.Objects().Count(), 0U);
        EXPECT_FALSE(mac.IsLoaded(plugin));
    }
}

TEST(MacPlugin, EachCallThatFailsEndsTheLoadingAndReleasesWhatWasMade)
{
    const Lines opening = Opening(kPlugin);
    struct SRow
    {
        const char* mFunction;
        int mWhich;
        std::size_t mKept; // objects left afterwards
        Lines mCalls;
    };
    const SRow rows[] = {
        {"CFStringCreateWithCString", 1, 0, {"CFStringCreateWithCString " + kPlugin + " -> null"}},
        {"CFURLCreateWithFileSystemPath",
         1,
         0,
         {opening[0], "CFURLCreateWithFileSystemPath string1 -> null", opening[2]}},
        {"CFBundleCreate",
         1,
         0,
         {opening[0], opening[1], opening[2], "CFBundleCreate url1 -> null", opening[4]}},
        // Kept on purpose: its executable may have been set up in part.
        {"CFBundleLoadExecutable", 1, 1, Joined(opening, kLoading)},
        {"CFBundleGetFunctionPointerForName", 1, 0,
         Joined(opening, kLoading, kAskingForFirstEntry, kAskingForSecondEntry, kGivingUp)},
        {"CFStringCreateWithCString", 2, 0,
         Joined(opening, kLoading,
                Lines{"CFStringCreateWithCString VSTPluginMain -> null",
                      "CFStringCreateWithCString main_macho -> string2",
                      "CFBundleGetFunctionPointerForName bundle1 main_macho", "CFRelease string2"},
                kGivingUp)},
    };
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(row.mFunction + std::string(" ") + std::to_string(row.mWhich));
        CMacWithSubject mac;
        mac.mSystem.Calls().Refuse(row.mFunction, row.mWhich);
        EXPECT_FALSE(mac->LoadPlugin(kPlugin.c_str()));
        EXPECT_EQ(mac.Calls(), row.mCalls);
        mac->DestroyPlugin();
        EXPECT_EQ(mac.Calls(), Lines());
        EXPECT_EQ(mac.mSystem.Objects().Count(), row.mKept);
        EXPECT_FALSE(mac.IsLoaded(kPlugin));
        EXPECT_STREQ(mac->PluginName(), "");
    }
}

/** Has a plug-in refused: its file is loaded, and the entry not found. */
bool LoadRefused(CMacWithSubject& ioMac, IPlatformSubject& ioSubject)
{
    ioMac.mSystem.Calls().Refuse("CFBundleGetFunctionPointerForName");
    return !ioSubject.LoadPlugin(kPlugin.c_str());
}

TEST(MacPlugin, ARefusedSecondOneLeavesTheFirstOnesCode)
{
    CMacWithSubject mac;
    ASSERT_TRUE(mac->LoadPlugin(kPlugin.c_str()));
    for (int round = 0; round < 2; ++round)
    {
        (void)mac.Calls(); // the end counts
        ASSERT_TRUE(LoadRefused(mac, *mac.Other()));
        EXPECT_EQ(mac.Calls().back(), "CFRelease bundle1"); // its own reference
        EXPECT_TRUE(mac.IsLoaded(kPlugin));
    }
    ASSERT_TRUE(mac.Other()->LoadPlugin(kPlugin.c_str()));
    (void)mac.Calls();
    mac->FreePlugin();
    EXPECT_EQ(mac.Calls(), Lines{"CFRelease bundle1"});
    EXPECT_TRUE(mac.IsLoaded(kPlugin));
    mac.Other()->FreePlugin();
    EXPECT_EQ(mac.Calls(), kGivingUp);
    EXPECT_FALSE(mac.IsLoaded(kPlugin));
    EXPECT_EQ(mac.mSystem.Objects().Count(), 0U);
}

TEST(MacPlugin, ARefusedFirstOneIsUnloadedAndTheSecondLoads)
{
    CMacWithSubject mac;
    ASSERT_TRUE(LoadRefused(mac, *mac.operator->()));
    EXPECT_FALSE(mac.IsLoaded(kPlugin));
    ASSERT_TRUE(mac.Other()->LoadPlugin(kPlugin.c_str()));
    EXPECT_STREQ(mac.Other()->PluginName(), "Scripted");
    ASSERT_TRUE(LoadRefused(mac, *mac.operator->()));
    EXPECT_TRUE(mac.IsLoaded(kPlugin));
}

TEST(MacPluginImage, WhoHasNotLoadedTheExecutableNeitherFindsNorUnloadsAnything)
{
    CMacWithSubject mac;
    ASSERT_TRUE(mac->OpenImage(kPlugin.c_str()));
    ASSERT_TRUE(mac.Other()->OpenImage(kPlugin.c_str()));
    EXPECT_EQ(mac.Other()->FindSymbol("GetPluginScript"), nullptr);
    EXPECT_FALSE(mac.IsLoaded(kPlugin));
    ASSERT_TRUE(mac->LoadExecutable());
    ASSERT_TRUE(mac->LoadExecutable()); // counts once
    mac.Other()->UnloadImage();
    EXPECT_TRUE(mac.IsLoaded(kPlugin));
    mac->UnloadImage();
    EXPECT_FALSE(mac.IsLoaded(kPlugin));
    EXPECT_EQ(mac.mSystem.Objects().Count(), 0U);
}

TEST(MacPluginImage, NothingOfAnUnloadedOneIsTouchedAgain)
{
    CMacWithSubject mac;
    ASSERT_TRUE(mac->OpenImage(kPlugin.c_str()));
    ASSERT_TRUE(mac->LoadExecutable());
    EXPECT_NE(mac->FindSymbol("GetPluginScript"), nullptr);
    EXPECT_EQ(mac->FindSymbol("main_macho"), nullptr);
    mac->UnloadImage();
    (void)mac.Calls(); // from here on there must be none
    mac->UnloadImage();
    EXPECT_FALSE(mac->LoadExecutable());
    EXPECT_EQ(mac->FindSymbol("GetPluginScript"), nullptr);
    mac->DropImage();
    EXPECT_EQ(mac.Calls(), Lines());
    EXPECT_EQ(mac.mSystem.Objects().Count(), 0U);
}

TEST(MacPluginImage, AMissingFolderOpensNothingAndAMissingExecutableDoesNotLoad)
{
    CMacWithSubject mac;
    EXPECT_FALSE(mac->OpenImage((kPlugin + ".missing").c_str()));
    EXPECT_EQ(mac.mSystem.Objects().Count(), 0U);
    EXPECT_TRUE(mac->OpenImage((kPlugin + "/Contents").c_str())); // a folder, yet no bundle's
    EXPECT_FALSE(mac->LoadExecutable());
}

TEST(MacModulePath, AModuleFindsItsOwnFileAndNoPathWhereThatDoesNotFit)
{
    CMacWithSubject mac;
    std::string buffer(kSubjectFile.size() + 2, '#');
    ASSERT_TRUE(mac->FindOwnPath(buffer.data(), static_cast<int>(kSubjectFile.size() + 1)));
    EXPECT_EQ(buffer, kSubjectFile + '\0' + '#');
    EXPECT_FALSE(mac->FindOwnPath(buffer.data(), static_cast<int>(kSubjectFile.size())));
    EXPECT_EQ(buffer.front(), '\0');
}

TEST(MacModifiers, ButtonsAndKeysBecomeTheBitsOfAGesture)
{
    constexpr std::uint32_t kCommand = 0x0100;
    constexpr std::uint32_t kShift = 0x0200;
    constexpr std::uint32_t kOption = 0x0800;
    constexpr std::uint32_t kControl = 0x1000;
    struct SRow
    {
        std::uint32_t mButtons;
        std::uint32_t mModifiers;
        unsigned long mBits;
    };
    const SRow rows[] = {
        {0, 0, 4},
        {1, 0, 4},
        {2, 0, 4 | 16},
        {4, 0, 4},
        {0, kShift, 4 | 1},
        {0, kCommand, 4 | 2},
        {0, kOption, 4},
        {0, kControl, 4 | 16},
        {3, 0xFFFF, 4 | 1 | 2 | 16},
        {0, 0xFFFF & ~(kCommand | kShift | kControl), 4},
    };
    CMacWithSubject mac;
    for (const SRow& row : rows)
    {
        SCOPED_TRACE(testing::Message() << row.mButtons << " " << row.mModifiers);
        mac.mSystem.mButtons = row.mButtons;
        mac.mSystem.mModifiers = row.mModifiers;
        EXPECT_EQ(mac->MouseModifiers(), row.mBits);
    }
}

TEST(MacAutoreleasePool, PoolsCloseInsideOutAlsoOnAnException)
{
    const Lines expected = {
        "objc_autoreleasePoolPush -> pool1", "objc_autoreleasePoolPush -> pool2",
        "objc_autoreleasePoolPush -> pool3", "objc_autoreleasePoolPop pool3",
        "objc_autoreleasePoolPop pool2",     "objc_autoreleasePoolPop pool1",
    };
    for (const bool throws : {false, true})
    {
        SCOPED_TRACE(throws);
        CMacWithSubject mac;
        mac->NestPools(3, throws);
        EXPECT_EQ(mac.Calls(), expected);
        EXPECT_TRUE(mac.mSystem.Pools().empty());
    }
}
} // namespace
