#include "Tests/integration/HostedModule.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace
{
/** Loaded so that every name it shows is taken for the same name of the modules loaded after it. */
class CShownToAll
{
public:
    explicit CShownToAll(const std::string& inFile) : mImage(dlopen(inFile.c_str(), RTLD_NOW | RTLD_GLOBAL))
    {
        if (mImage == nullptr)
            throw std::runtime_error(inFile + " cannot be loaded");
    }
    CShownToAll(const CShownToAll&) = delete;
    CShownToAll& operator=(const CShownToAll&) = delete;
    ~CShownToAll() { dlclose(mImage); }

private:
    void* mImage;
};

class CHostedProduct
{
public:
    explicit CHostedProduct(const std::string& inFile) : mHosted(mLog, CModule::Open(inFile, mLog)) {}

    CHostLog mLog;
    CHostedModule mHosted;
};

TEST(TwoProducts, InOneProcessEachIsAndSoundsAsItDoesAlone)
{
    const std::string files[] = {TEST_SYNTH_PRODUCT, TEST_DELAY_PRODUCT};
    STwoProducts alone;
    for (const int i : {0, 1})
    {
        CHostedProduct product(files[i]);
        alone.mDescribing[i] = product.mHosted.Describing();
        alone.mSound[i] = product.mHosted.Render();
        EXPECT_GT(LoudnessOf(alone.mSound[i]), 1.0) << files[i];
    }
    EXPECT_NE(alone.mDescribing[0], alone.mDescribing[1]);
    EXPECT_NE(alone.mSound[0], alone.mSound[1]);

    const CShownToAll shown[] = {CShownToAll(files[0]), CShownToAll(files[1])};
    CHostedProduct first(files[0]);
    CHostedProduct second(files[1]);
    const STwoProducts together = UseTogether(first.mHosted, second.mHosted);
    for (const int i : {0, 1})
    {
        EXPECT_EQ(together.mDescribing[i], alone.mDescribing[i]);
        EXPECT_TRUE(together.mSound[i] == alone.mSound[i]) << files[i];
    }
}
} // namespace
