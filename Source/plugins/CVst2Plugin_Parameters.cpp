#include "Source/plugins/CVst2Plugin.h"

#include "Source/plugins/CopyBounded.h"

#include <cmath>
#include <cstdio>
#include <iterator>

namespace
{
/** A record to be filled in: program 0 in omni mode, without a name. The program asked for travels in the
 * index. */
SRoomyRecord<MidiProgramName> OmniProgram()
{
    SRoomyRecord<MidiProgramName> program;
    program.mRecord.flags = kMidiIsOmni;
    return program;
}

template <std::size_t kLength>
void Terminate(char (&ioText)[kLength])
{
    *std::rbegin(ioText) = '\0';
}
} // namespace

long CVst2Plugin::GetNumParameters() { return mEffect != nullptr ? mEffect->numParams : -1; }

float CVst2Plugin::GetParameter(long inIndex)
{
    return mEffect != nullptr && mEffect->getParameter != nullptr
               ? mEffect->getParameter(mEffect, static_cast<std::int32_t>(inIndex))
               : 0.0F;
}

void CVst2Plugin::SetParameter(long inIndex, float inValue)
{
    const float current = GetParameter(inIndex);
    if (std::islessgreater(current, inValue) && mEffect != nullptr && mEffect->setParameter != nullptr)
        mEffect->setParameter(mEffect, static_cast<std::int32_t>(inIndex), inValue);
}

const char* CVst2Plugin::GetParameterDisplay(long inIndex) { return TextFor(effGetParamDisplay, inIndex); }

const char* CVst2Plugin::GetParameterName(long inIndex) { return TextFor(effGetParamName, inIndex); }

const char* CVst2Plugin::GetParameterLabel(long inIndex) { return TextFor(effGetParamLabel, inIndex); }

long CVst2Plugin::GetNumPrograms() { return mEffect != nullptr ? mEffect->numPrograms : -1; }

long CVst2Plugin::GetProgram()
{
    return mEffect != nullptr ? static_cast<long>(Dispatch(effGetProgram)) : -1;
}

void CVst2Plugin::SetProgram(long inProgram)
{
    if (mEffect != nullptr)
        (void)Dispatch(effSetProgram, 0, inProgram); // a result of its own is not part of the interface
}

const char* CVst2Plugin::GetProgramNameByIndex(long inProgram)
{
    return TextFor(effGetProgramNameIndexed, inProgram);
}

long CVst2Plugin::GetNumMidiPrograms()
{
    if (mEffect == nullptr)
        return -1;
    SRoomyRecord<MidiProgramName> program = OmniProgram();
    return static_cast<long>(Dispatch(effGetMidiProgramName, 0, 0, &program));
}

long CVst2Plugin::GetNumMidiCategories()
{
    if (mEffect == nullptr)
        return -1;
    SRoomyRecord<MidiProgramCategory> category;
    return static_cast<long>(Dispatch(effGetMidiProgramCategory, 0, 0, &category));
}

const char* CVst2Plugin::GetMidiCategory(long inIndex)
{
    SRoomyRecord<MidiProgramCategory> category;
    if (mEffect != nullptr)
    {
        (void)Dispatch(effGetMidiProgramCategory, static_cast<std::int32_t>(inIndex), 0, &category);
        Terminate(category.mRecord.name);
    }
    CopyBounded(mText.mRecord, category.mRecord.name);
    return mText.mRecord.data();
}

const char* CVst2Plugin::GetMidiProgram(long inIndex)
{
    mText.mRecord.fill('\0');
    if (mEffect == nullptr)
        return mText.mRecord.data();
    SRoomyRecord<MidiProgramName> answer = OmniProgram();
    (void)Dispatch(effGetMidiProgramName, static_cast<std::int32_t>(inIndex), 0, &answer);
    MidiProgramName& program = answer.mRecord;
    Terminate(program.name);

    SRoomyRecord<MidiProgramCategory> category;
    CopyBounded(category.mRecord.name, "-");
    if (const std::int32_t parent = program.parentCategoryIndex;
        parent < GetNumMidiCategories() && parent >= 0)
    {
        category = {};
        (void)Dispatch(effGetMidiProgramCategory, parent, 0, &category);
        Terminate(category.mRecord.name);
    }
    (void)std::snprintf(mText.mRecord.data(), mText.mRecord.size(), " %s ; ? ; %d ; %d ; %s",
                        category.mRecord.name, static_cast<signed char>(program.midiBankLsb),
                        static_cast<signed char>(program.midiBankMsb),
                        program.name); // two names of 64 always fit
    return mText.mRecord.data();
}

const char* CVst2Plugin::TextFor(std::int32_t inOpcode, long inIndex)
{
    if (mEffect != nullptr)
        RequestText(inOpcode, static_cast<std::int32_t>(inIndex), mText);
    else
        mText.mRecord.fill('\0');
    return mText.mRecord.data();
}
