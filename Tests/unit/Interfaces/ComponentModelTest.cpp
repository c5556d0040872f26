#include "Interfaces/ACF/ACFPtr.h"
#include "Interfaces/ACF/CACFUnknown.h"

#include <gtest/gtest.h>

namespace
{
TEST(ComponentModel, EveryPointerThatIsHandedOverIsCountedAndGivenBack)
{
    const std::int32_t others = CACFUnknown::GetActiveObjectCount();
    IACFUnknown* const unknown = (new CACFUnknown)->GetUnknown();
    const auto references = [unknown]
    {
        (void)unknown->AddRef();
        return unknown->Release();
    };
    {
        const ACFPtr<IACFUnknown> first(unknown);
        auto second = ACFPtr<IACFUnknown>::Query(unknown, IID_IACFUnknown);
        EXPECT_EQ(references(), 2U);
        EXPECT_EQ(unknown->QueryInterface(IID_IACFUnknown, second.Receive()), ACF_OK); // filled anew
        EXPECT_EQ(references(), 2U);
    }
    EXPECT_EQ(CACFUnknown::GetActiveObjectCount(), others);
}
} // namespace
