#include "Libs/AAXLibrary/source/AAX_CBinaryDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CBinaryTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CLinearTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CNumberDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CParameter.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace
{
/** A text that is accepted is a value from 0 to 1, whose own text is accepted and gives itself again. */
void TypeIn(AAX_IParameter& ioParameter, const AAX_CString& inText, std::int32_t inLength)
{
    double value = -1.0;
    AAX_CString shown;
    if (ioParameter.GetNormalizedValueFromString(inText, &value))
    {
        AAX_CString again;
        if (!(value >= 0.0 && value <= 1.0) || !ioParameter.GetStringFromNormalizedValue(value, shown) ||
            !ioParameter.GetNormalizedValueFromString(shown, &value) ||
            !ioParameter.GetStringFromNormalizedValue(value, again) || again != shown)
            std::abort();
    }
    (void)ioParameter.GetStringFromNormalizedValue(value, inLength, shown); // whatever the value is
    (void)ioParameter.SetValueFromString(inText);                           // accepted or not
    if (!ioParameter.GetValueString(inLength, &shown))
        std::abort();
}

/** Texts of a plug-in's parameter: its name, cut as displays of a few characters do it. */
void Name(AAX_IParameter& ioParameter, const AAX_CString& inText, std::int32_t inLength)
{
    ioParameter.SetName(inText);
    ioParameter.AddShortenedName(inText);
    if (ioParameter.ShortenedName(inLength) != inText)
        std::abort(); // there is no other
    ioParameter.ClearShortenedNames();
    AAX_CString part;
    inText.SubString(0, static_cast<std::uint32_t>(inLength), &part);
    if (std::strncmp(part.Get(), inText.Get(), part.Length()) != 0)
        std::abort();
}
} // namespace

// The first byte is a length, the rest a text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inData, std::size_t inSize)
{
    if (inSize == 0)
        return 0;
    const std::int32_t length = inData[0];
    const AAX_CString text(std::string(reinterpret_cast<const char*>(inData) + 1, inSize - 1).c_str());
    AAX_CParameter<float> number("00000", "Number", 0.5F, AAX_CLinearTaperDelegate<float, 0>(0.0F, 1.0F),
                                 AAX_CNumberDisplayDelegate<float, 2, 0>(), true);
    AAX_CParameter<bool> onOff("00001", "Switch", false, AAX_CBinaryTaperDelegate<bool>(),
                               AAX_CBinaryDisplayDelegate<bool>("bypass", "on"), true);
    TypeIn(number, text, length);
    TypeIn(onOff, text, length);
    Name(number, text, length);
    return 0;
}
