#include "Interfaces/AAX/AAX_IEffectDescriptor.h"
#include "Interfaces/AAX/AAX_UIDs.h"
#include "Libs/AAXLibrary/source/AAX_VCollection.h"
#include "Source/AAX_CInstrumentParameters.h"
#include "Source/AAX_SInstrumentSetupInfo.h"
#include "Tools/aaxhost/host/CHost.h"
#include "Tools/aaxhost/host/CHostLog.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{
class InstrumentDescribe : public testing::Test
{
protected:
    std::vector<std::string> Describe(const AAX_SInstrumentSetupInfo& inInfo,
                                      AAX_Result inResult = kAAX_Success)
    {
        mLog.Clear();
        {
            AAX_VCollection collection(mHost.Unknown());
            const std::unique_ptr<AAX_IEffectDescriptor> descriptor = collection.NewDescriptor();
            EXPECT_EQ(AAX_CInstrumentParameters::StaticDescribe(descriptor.get(), inInfo), inResult);
        }
        EXPECT_EQ(mLog.LiveObjects(), 0);
        return mLog.Calls();
    }

    CHostLog mLog;
    CHost mHost{mLog};
};

bool Has(const std::vector<std::string>& inLines, const std::string& inLine)
{
    return std::find(inLines.begin(), inLines.end(), inLine) != inLines.end();
}

TEST_F(InstrumentDescribe, FieldsAreNodesWhereTheyAreNeededAndPlaceholdersElsewhere)
{
    AAX_SInstrumentSetupInfo info;
    std::vector<std::string> lines = Describe(info);
    for (const char* field : {"4", "5", "6", "7", "21", "23"})
        EXPECT_TRUE(Has(lines, "AddPrivateData(" + std::string(field) + ", 4, 0)")) << field;
    EXPECT_TRUE(Has(lines, "AddPrivateData(22, 8, 0)"));

    info.mNeedsGlobalMIDI = info.mNeedsInputMIDI = info.mNeedsTransport = true;
    info.mInputMIDINodeName = "In";
    info.mTransportMIDINodeName = "not used";
    info.mNumAdditionalInputMIDINodes = 2;
    const AAX_CTypeID meters[] = {1, 2};
    info.mNumMeters = 2;
    info.mMeterIDs = meters;
    info.mUseProperty151 = true;
    lines = Describe(info);
    const std::vector<std::string> nodes(lines.begin(), lines.begin() + 5);
    EXPECT_EQ(nodes, (std::vector<std::string>{"AddMIDINode(5, global, \"GlobalMIDI\", 0xFFFF)",
                                               "AddMIDINode(4, local input, \"In\", 0xFFFF)",
                                               "AddMIDINode(6, transport, \"Transport\", 0xFFFF)",
                                               "AddMIDINode(7, local input, \"In\", 0xFFFF)",
                                               "AddMIDINode(8, local input, \"In2\", 0xFFFF)"}));
    EXPECT_TRUE(Has(lines, "AddPrivateData(9, 4, 0)"));
    EXPECT_FALSE(Has(lines, "AddPrivateData(23, 4, 0)"));
}
} // namespace
