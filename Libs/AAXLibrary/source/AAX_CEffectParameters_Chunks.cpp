#include "Interfaces/AAX/AAX_IParameter.h"
#include "Libs/AAXLibrary/source/AAX_CEffectParameters.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Libs/AAXLibrary/source/AAX_VAutomationDelegate.h"
#include "Libs/AAXLibrary/source/AAX_VController.h"
#include "Libs/AAXLibrary/source/AAX_VTransport.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace
{
/** The version field of a chunk that was built rather than loaded. */
constexpr std::int32_t kNoVersion = -1;

/**
 * Calls `inVisit` with a parameter's value in the parameter's own type. The order decides for a parameter
 * that answers several.
 * @return what the visitor answers; true when the parameter has no value.
 */
template <class Visit>
bool VisitValue(const AAX_IParameter& inParameter, Visit inVisit)
{
    float real = 0.0F;
    std::int32_t integer = 0;
    bool flag = false;
    double wideReal = 0.0;
    AAX_CString text;
    if (inParameter.GetValueAsFloat(&real))
        return inVisit(real);
    if (inParameter.GetValueAsInt32(&integer))
        return inVisit(integer);
    if (inParameter.GetValueAsBool(&flag))
        return inVisit(flag);
    if (inParameter.GetValueAsDouble(&wideReal))
        return inVisit(wideReal);
    if (inParameter.GetValueAsString(&text))
        return inVisit(text);
    return true;
}

/** A value in the type in which a chunk holds it: reals as doubles, switches as integers. */
class CStoredValue
{
public:
    CStoredValue(AAX_CChunkDataParser& ioParser, const char* inName) : mParser(ioParser), mName(inName) {}

    void Add(double inValue) { mParser.AddDouble(mName, inValue); }
    void Add(std::int32_t inValue) { mParser.AddInt32(mName, inValue); }
    void Add(const AAX_CString& inValue) { mParser.AddString(mName, inValue); }
    bool Find(double& outValue) { return mParser.FindDouble(mName, &outValue); }
    bool Find(std::int32_t& outValue) { return mParser.FindInt32(mName, &outValue); }
    bool Find(AAX_CString& outValue) { return mParser.FindString(mName, &outValue); }

private:
    AAX_CChunkDataParser& mParser;
    const char* mName = nullptr;
};

struct SStore
{
    CStoredValue mStored;
    bool operator()(float inValue) { return (*this)(static_cast<double>(inValue)); }
    bool operator()(bool inValue) { return (*this)(std::int32_t{inValue ? 1 : 0}); }
    template <class Value>
    bool operator()(const Value& inValue)
    {
        mStored.Add(inValue);
        return true;
    }
};

struct SRestore
{
    CStoredValue mStored;
    AAX_IParameter& mParameter;
    bool operator()(float)
    {
        double stored = 0.0;
        return mStored.Find(stored) && mParameter.SetValueWithFloat(static_cast<float>(stored));
    }
    bool operator()(std::int32_t)
    {
        std::int32_t stored = 0;
        return mStored.Find(stored) && mParameter.SetValueWithInt32(stored);
    }
    bool operator()(bool)
    {
        std::int32_t stored = 0;
        return mStored.Find(stored) && mParameter.SetValueWithBool(stored != 0);
    }
    bool operator()(double)
    {
        double stored = 0.0;
        return mStored.Find(stored) && mParameter.SetValueWithDouble(stored);
    }
    bool operator()(const AAX_CString&)
    {
        AAX_CString stored;
        return mStored.Find(stored) && mParameter.SetValueWithString(stored);
    }
};

struct SCompare
{
    CStoredValue mStored;
    bool operator()(float inValue)
    {
        double stored = 0.0;
        return mStored.Find(stored) && inValue == static_cast<float>(stored);
    }
    bool operator()(std::int32_t inValue)
    {
        std::int32_t stored = 0;
        return mStored.Find(stored) && inValue == stored;
    }
    bool operator()(bool inValue)
    {
        std::int32_t stored = 0;
        return mStored.Find(stored) && inValue == (stored != 0);
    }
    bool operator()(double inValue) { return (*this)(static_cast<float>(inValue)); }
    bool operator()(const AAX_CString& inValue)
    {
        AAX_CString stored;
        return mStored.Find(stored) && inValue == stored;
    }
};
} // namespace

AAX_Result AAX_CEffectParameters::GetNumberOfChunks(std::int32_t* outCount) const
{
    if (outCount == nullptr)
        return kAAX_ErrorNullArgument;
    *outCount = 1;
    return kAAX_Success;
}

AAX_Result AAX_CEffectParameters::GetChunkIDFromIndex(std::int32_t inIndex, AAX_CTypeID* outId) const
{
    if (outId == nullptr)
        return kAAX_ErrorNullArgument;
    *outId = inIndex == 0 ? kAAX_ControlsChunkID : AAX_CTypeID{0};
    return inIndex == 0 ? kAAX_Success : kAAX_ErrorChunkIndex;
}

AAX_Result AAX_CEffectParameters::GetChunkSize(AAX_CTypeID inId, std::uint32_t* outSize) const
{
    if (outSize == nullptr)
        return kAAX_ErrorNullArgument;
    *outSize = 0;
    if (inId != kAAX_ControlsChunkID)
        return kAAX_ErrorUnknownChunk;
    return AAX_Contained(
        [&, this]
        {
            BuildChunkData();
            mChunkSize = mChunkParser.GetChunkDataSize();
            *outSize = static_cast<std::uint32_t>(mChunkSize);
            return kAAX_Success;
        });
}

AAX_Result AAX_CEffectParameters::GetChunk(AAX_CTypeID inId, AAX_SPlugInChunk* outChunk) const
{
    if (inId != kAAX_ControlsChunkID)
        return kAAX_ErrorUnknownChunk;
    if (outChunk == nullptr)
        return kAAX_ErrorNullArgument;
    return AAX_Contained(
        [&, this]
        {
            BuildChunkData();
            // The host has made room for the size that it was told.
            const std::int32_t size = mChunkParser.GetChunkDataSize();
            if (size == 0 || size != mChunkSize)
                return kAAX_ErrorChunkSize;
            outChunk->mVersion = kNoVersion;
            static_assert(sizeof(kAAX_ControlsChunkName) <= sizeof(outChunk->mName));
            std::ranges::fill(outChunk->mName, '\0');
            std::ranges::copy(kAAX_ControlsChunkName, outChunk->mName);
            return mChunkParser.GetChunkData(outChunk);
        });
}

AAX_Result AAX_CEffectParameters::SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk)
{
    if (inId != kAAX_ControlsChunkID)
        return kAAX_ErrorUnknownChunk;
    if (inChunk == nullptr)
        return kAAX_ErrorNullArgument;
    return AAX_Contained(
        [&, this]
        {
            // Of its own: a host may ask for a chunk from inside a request, and nothing of this one is to be
            // kept.
            AAX_CChunkDataParser parser;
            parser.LoadChunk(inChunk);
            RequestSavedValues(parser);
            return kAAX_Success;
        });
}

void AAX_CEffectParameters::RequestSavedValues(AAX_CChunkDataParser& ioSaved)
{
    for (std::int32_t index = 0; index < mParameterManager.NumParameters(); ++index)
    {
        AAX_IParameter& parameter = *mParameterManager.GetParameter(index);
        if (IsSaved(parameter))
            VisitValue(parameter, SRestore{{ioSaved, parameter.Identifier()}, parameter});
    }
}

AAX_Result AAX_CEffectParameters::CompareActiveChunk(const AAX_SPlugInChunk* inChunk,
                                                     AAX_CBoolean* outIsEqual) const
{
    if (inChunk == nullptr || outIsEqual == nullptr)
        return kAAX_ErrorNullArgument;
    *outIsEqual = 1;
    if (inChunk->mChunkID != kAAX_ControlsChunkID)
        return kAAX_Success;
    *outIsEqual = 0;
    return AAX_Contained(
        [&, this]
        {
            AAX_CChunkDataParser parser;
            parser.LoadChunk(inChunk);
            for (std::int32_t index = 0; index < mParameterManager.NumParameters(); ++index)
            {
                const AAX_IParameter& parameter = *mParameterManager.GetParameter(index);
                if (IsSaved(parameter) && !VisitValue(parameter, SCompare{{parser, parameter.Identifier()}}))
                    return kAAX_Success;
            }
            *outIsEqual = 1;
            return kAAX_Success;
        });
}

void AAX_CEffectParameters::BuildChunkData() const
{
    mChunkParser.Clear();
    for (std::int32_t index = 0; index < mParameterManager.NumParameters(); ++index)
    {
        const AAX_IParameter& parameter = *mParameterManager.GetParameter(index);
        if (IsSaved(parameter))
            VisitValue(parameter, SStore{{mChunkParser, parameter.Identifier()}});
    }
}

bool AAX_CEffectParameters::IsSaved(const AAX_IParameter& inParameter) const
{
    return !mFilteredParameterIDs.contains(std::string_view(inParameter.Identifier()));
}
