#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class AAX_IAutomationDelegate;
class AAX_IParameter;

/**
 * Owns the parameters of an instance, in the order in which the host sees them, and finds them by identifier.
 *
 * Threads: parameters are added and removed on the main thread while nothing else uses the manager; the
 * look-ups are safe on any thread and allocate nothing.
 */
class AAX_CParameterManager
{
public:
    AAX_CParameterManager() = default;
    AAX_CParameterManager(const AAX_CParameterManager&) = delete;
    AAX_CParameterManager& operator=(const AAX_CParameterManager&) = delete;
    ~AAX_CParameterManager();

    /** What parameters added from now on are given; not owned, must outlive them. */
    void Initialize(AAX_IAutomationDelegate* inAutomationDelegate);

    /**
     * Takes the parameter over and puts it last.
     * @return false when it was not taken and stays the caller's: its identifier exists already, or it is
     *         null.
     */
    bool AddParameter(AAX_IParameter* inParameter);
    /** Deletes the parameter of that identifier, if there is one; later ones move down by one index. */
    void RemoveParameterByID(AAX_CParamID inId);
    void RemoveParameter(AAX_IParameter* inParameter);
    void RemoveAllParameters();

    std::int32_t NumParameters() const noexcept;
    /** @return null for an unknown or null identifier. */
    AAX_IParameter* GetParameterByID(AAX_CParamID inId);
    const AAX_IParameter* GetParameterByID(AAX_CParamID inId) const;
    /** @return null for an index out of range. */
    AAX_IParameter* GetParameter(std::int32_t inIndex);
    const AAX_IParameter* GetParameter(std::int32_t inIndex) const;
    /** @return -1 for an unknown or null identifier. Takes as long as there are parameters. */
    std::int32_t ControlIndexFromID(AAX_CParamID inId) const;

private:
    AAX_IAutomationDelegate* mAutomationDelegate = nullptr;
    std::vector<std::unique_ptr<AAX_IParameter>> mParameters;
    std::map<std::string, AAX_IParameter*, std::less<>> mParametersMap;
};
