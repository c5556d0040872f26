#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>

namespace
{
/** The parts of a description that a host remembers, as one text. */
std::string Summary(const SEffect& inEffect)
{
    std::string text = inEffect.mID;
    for (const std::string& name : inEffect.mNames)
        text += '|' + name;
    for (const SComponent& component : inEffect.mComponents)
    {
        for (const SField& field : component.mFields)
            text += fmt::format("|{}:{}:{}", field.mIndex, NameOfFieldKind(field.mKind), field.mSize);
        for (const SAuxStem& stem : component.mAuxStems)
            text += fmt::format("|{}:{}:{}", stem.mIndex, stem.mFormat, stem.mName);
        for (const SProcessProc& proc : component.mProcs)
            for (const SProperty& property : proc.mProperties)
                text += fmt::format("|{}={}", property.mProperty, property.mValue);
    }
    return text;
}

const SComponent& FirstComponent(const SEffect& inEffect)
{
    if (inEffect.mComponents.empty() || inEffect.mComponents.front().mProcs.empty())
        throw SCheckEnd{SFinding::Failed("The effect describes no component that renders.")};
    return inEffect.mComponents.front();
}

SFinding Opens(CCheckContext& ioContext)
{
    (void)ioContext.Module(); // ends the check when it does not open
    return SFinding::Passed();
}

SFinding Identity(CCheckContext& ioContext)
{
    const SEffect& effect = ioContext.Module().Effect();
    if (effect.mID.empty())
        return SFinding::Failed("The effect has no identifier.");
    if (std::ranges::any_of(effect.mID, [](char c) { return c <= ' ' || c > '~'; }))
        return SFinding::Failed(
            fmt::format("The effect's identifier of {} has some that are not printable ASCII.",
                        Counted(std::ssize(effect.mID), "character")));
    const PropertyList& properties = FirstComponent(effect).mProcs.front().mProperties;
    for (const AAX_EProperty property :
         {kAAX_PropertyManufacturerID, kAAX_PropertyProductID, kAAX_PropertyPluginID})
        if (FindProperty(properties, property).value_or(0) == 0)
            return SFinding::Failed(
                fmt::format("The {} is missing or 0: a session could not find the plug-in again.",
                            NameOfProperty(property)));
    return SFinding::Passed();
}

SFinding Names(CCheckContext& ioContext)
{
    const SDescription& description = ioContext.Module().Description();
    if (description.mEffects.front().mNames.empty() || description.mEffects.front().mNames.front().empty())
        return SFinding::Failed("The effect has no name for the host's menu.");
    if (description.mPackageNames.empty() || description.mPackageNames.front().empty())
        return SFinding::Failed("The package has no name.");
    if (description.mManufacturerName.empty())
        return SFinding::Warning("The manufacturer has no name, so the host's menu has no group for it.");
    return SFinding::Passed();
}

SFinding Category(CCheckContext& ioContext)
{
    return ioContext.Module().Effect().mCategories.empty()
               ? SFinding::Failed("The effect is in no category of the host's menu.")
               : SFinding::Passed();
}

SFinding Stems(CCheckContext& ioContext)
{
    const SComponent& component = FirstComponent(ioContext.Module().Effect());
    const PropertyList& properties = component.mProcs.front().mProperties;
    const auto output = FindProperty(properties, kAAX_PropertyOutputStemFormat);
    if (!output || AAX_StemChannelCount(*output) == 0)
        return SFinding::Failed("No output stem is described, so nothing can be heard.");
    for (const SAuxStem& stem : component.mAuxStems)
        if (AAX_StemChannelCount(stem.mFormat) == 0)
            return SFinding::Failed(fmt::format("The auxiliary stem '{}' has no channels.", stem.mName));
    return SFinding::Passed();
}

SFinding Fields(CCheckContext& ioContext)
{
    std::set<AAX_CFieldIndex> taken;
    bool hasOutput = false;
    bool hasLength = false;
    for (const SField& field : FirstComponent(ioContext.Module().Effect()).mFields)
    {
        if (!taken.insert(field.mIndex).second)
            return SFinding::Failed(fmt::format("The field {} is described twice.", field.mIndex));
        hasOutput = hasOutput || field.mKind == EFieldKind::AudioOut;
        hasLength = hasLength || field.mKind == EFieldKind::AudioBufferLength;
    }
    if (!hasOutput)
        return SFinding::Failed("The render record has no field for audio outputs.");
    if (!hasLength)
        return SFinding::Failed("The render record has no field for the number of frames.");
    return SFinding::Passed();
}

SFinding Procedures(CCheckContext& ioContext)
{
    const SEffect& effect = ioContext.Module().Effect();
    if (FirstComponent(effect).mProcs.front().mProcess == nullptr)
        return SFinding::Failed("The render procedure is null.");
    if (FindProcPtr(effect, kAAX_ProcPtrEffectParameters) == nullptr)
        return SFinding::Failed("No procedure makes the effect parameters.");
    if (FindProcPtr(effect, kAAX_ProcPtrEffectGUI) == nullptr)
        return SFinding::Warning("No procedure makes an editor; the host shows its own.");
    return SFinding::Passed();
}

SFinding Stable(CCheckContext& ioContext)
{
    const std::string first = Summary(ioContext.Module().Effect());
    ioContext.CloseModule();
    const std::string second = Summary(ioContext.Module().Effect());
    if (second == first)
        return SFinding::Passed();
    // The parts begin with a bar: what the host remembers is told from the first other part on.
    const auto place = static_cast<std::size_t>(std::ranges::mismatch(first, second).in1 - first.begin());
    const auto part = [place](const std::string& text)
    {
        const std::size_t bar = text.rfind('|', place);
        const std::size_t begin = bar == std::string::npos ? 0 : bar + 1;
        return text.substr(begin, text.find('|', begin) - begin);
    };
    return SFinding::Failed(fmt::format(
        "Opened a second time, the module describes itself in another way: '{}' where it was '{}'.",
        part(second), part(first)));
}

SFinding NothingLeft(CCheckContext& ioContext)
{
    if (const int live = ioContext.Module().LiveObjects(); live != 0)
        return SFinding::Failed(fmt::format("Before there is an instance, {} of the module {} alive.",
                                            Counted(live, "object"), live == 1 ? "is" : "are"));
    ioContext.CloseModule();
    if (const int live = ioContext.Log().LiveObjects(); live != 0)
        return SFinding::Failed(
            fmt::format("The closed module never gave back {} of the host.", Counted(live, "object")));
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> DescriptionChecks()
{
    static constexpr SCheck kChecks[] = {
        {"description.opens", "The module loads, starts and describes at least one effect.", 1, &Opens,
         EAlone::Nothing},
        {"description.identity", "The effect has an identifier and its three codes.", 1, &Identity,
         EAlone::Nothing},
        {"description.names", "Effect, package and manufacturer have names for the host's menus.", 1, &Names,
         EAlone::Nothing},
        {"description.category", "The effect is in a category of the host's menu.", 1, &Category,
         EAlone::Nothing},
        {"description.stems", "There is an output stem, and every auxiliary stem has channels.", 1, &Stems,
         EAlone::Nothing},
        {"description.fields", "The render record's fields are complete and none is described twice.", 1,
         &Fields, EAlone::Nothing},
        {"description.procedures", "Render procedure, effect parameters and editor are registered.", 1,
         &Procedures, EAlone::Nothing},
        {"description.stable", "The module describes itself the same way each time it is opened.", 1, &Stable,
         EAlone::Nothing},
        {"description.nothing-left", "A closed module leaves no object of its own or of the host's behind.",
         2, &NothingLeft, EAlone::Nothing},
    };
    return kChecks;
}
