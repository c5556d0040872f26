#pragma once
#include "Interfaces/AAX/AAX_IACFEffectGUI.h"
#include "Interfaces/AAX/AAX_IACFEffectParameters.h"
#include "Interfaces/ACF/ACFPtr.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/aaxhost/host/HostDescription.h"
#include "Tools/aaxhost/player/SRenderCall.h"
#include "Tools/fuzz/CFuzzInput.h"

#include <map>
#include <memory>
#include <string>

/**
 * An instance of a module in the hands of a host that keeps to no order: calls come before Initialize and
 * after Uninitialize, with identifiers and values of nothing; requests are answered at once, any number of
 * steps later, or only the last of them, and so are some that nobody made. What it hands over has the sizes
 * that it says.
 */
class CFuzzedInstance
{
public:
    CFuzzedInstance(const SEffect& inEffect, CHostLog& inLog, EAnswers inAnswers);
    CFuzzedInstance(const CFuzzedInstance&) = delete;
    CFuzzedInstance& operator=(const CFuzzedInstance&) = delete;
    ~CFuzzedInstance();

    /** One call or a few that belong together, as the input says. */
    void Step(CFuzzInput& ioInput);

private:
    void Begin(CFuzzInput& ioInput);
    void Render(CFuzzInput& ioInput);
    void AskParameter(CFuzzInput& ioInput);
    void ChangeParameter(CFuzzInput& ioInput);
    /** Several steps of automation within one cycle of the host. */
    void Automate(CFuzzInput& ioInput);
    void AskAnythingElse(CFuzzInput& ioInput);
    void Save(CFuzzInput& ioInput);
    void Load(CFuzzInput& ioInput);
    void UseEditor(CFuzzInput& ioInput);
    void MakeEditor();
    void LetGo(CFuzzInput& ioInput);
    static AAX_CTypeID ChunkId(CFuzzInput& ioInput);
    /** "00000" and its like mostly, else anything or null. */
    const char* Id(CFuzzInput& ioInput);

    const SEffect& mEffect;
    CHostLog& mLog;
    CInstanceHost mHost; // outlives what refers to it
    std::unique_ptr<SRenderCall> mCall;
    ACFPtr<AAX_IACFEffectParameters> mParameters;
    ACFPtr<AAX_IACFEffectGUI> mGUI;
    std::map<AAX_CTypeID, std::uint32_t> mAnnouncedSizes;
    std::string mId;
};
