#include "Libs/AAXLibrary/source/AAX_CParameterManager.h"

#include "Interfaces/AAX/AAX_IParameter.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace
{
constexpr std::size_t kFirstCapacity = 16;
}

AAX_CParameterManager::~AAX_CParameterManager() { RemoveAllParameters(); }

void AAX_CParameterManager::Initialize(AAX_IAutomationDelegate* inAutomationDelegate)
{
    mAutomationDelegate = inAutomationDelegate;
}

bool AAX_CParameterManager::AddParameter(AAX_IParameter* inParameter)
{
    if (inParameter == nullptr || GetParameterByID(inParameter->Identifier()) != nullptr)
        return false;
    // Nothing may throw once the parameter is owned here: it would have two owners then.
    if (mParameters.size() == mParameters.capacity())
        mParameters.reserve(std::max(kFirstCapacity, 2 * mParameters.size()));
    inParameter->SetAutomationDelegate(mAutomationDelegate);
    mParametersMap.emplace(inParameter->Identifier(), inParameter);
    mParameters.emplace_back(inParameter);
    return true;
}

void AAX_CParameterManager::RemoveParameterByID(AAX_CParamID inId)
{
    const std::int32_t index = ControlIndexFromID(inId);
    if (index < 0)
        return;
    // Deleted last: its identifier may be what the caller handed over, and the host hears of the removal.
    const std::unique_ptr<AAX_IParameter> removed = std::move(mParameters[static_cast<std::size_t>(index)]);
    mParameters.erase(mParameters.begin() + index);
    mParametersMap.erase(mParametersMap.find(std::string_view(inId)));
}

void AAX_CParameterManager::RemoveParameter(AAX_IParameter* inParameter)
{
    if (inParameter != nullptr)
        RemoveParameterByID(inParameter->Identifier());
}

void AAX_CParameterManager::RemoveAllParameters()
{
    mParametersMap.clear();
    // Out of the manager first: a host that is told of a removal may look parameters up.
    for (std::vector<std::unique_ptr<AAX_IParameter>> removed = std::exchange(mParameters, {});
         std::unique_ptr<AAX_IParameter> & parameter : removed)
        parameter.reset();
}

std::int32_t AAX_CParameterManager::NumParameters() const noexcept
{
    return static_cast<std::int32_t>(mParameters.size());
}

AAX_IParameter* AAX_CParameterManager::GetParameterByID(AAX_CParamID inId)
{
    return const_cast<AAX_IParameter*>(std::as_const(*this).GetParameterByID(inId));
}

const AAX_IParameter* AAX_CParameterManager::GetParameterByID(AAX_CParamID inId) const
{
    if (inId == nullptr)
        return nullptr;
    const auto found = mParametersMap.find(std::string_view(inId));
    return found != mParametersMap.end() ? found->second : nullptr;
}

AAX_IParameter* AAX_CParameterManager::GetParameter(std::int32_t inIndex)
{
    return const_cast<AAX_IParameter*>(std::as_const(*this).GetParameter(inIndex));
}

const AAX_IParameter* AAX_CParameterManager::GetParameter(std::int32_t inIndex) const
{
    return inIndex >= 0 && inIndex < NumParameters() ? mParameters[static_cast<std::size_t>(inIndex)].get()
                                                     : nullptr;
}

std::int32_t AAX_CParameterManager::ControlIndexFromID(AAX_CParamID inId) const
{
    if (inId == nullptr)
        return -1;
    for (std::int32_t index = 0; index < NumParameters(); ++index)
        if (std::strcmp(mParameters[static_cast<std::size_t>(index)]->Identifier(), inId) == 0)
            return index;
    return -1;
}
