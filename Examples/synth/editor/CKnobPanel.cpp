#include "Examples/synth/editor/CKnobPanel.h"

#include "Examples/common/IEditedEffect.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace
{
// Pixels.
constexpr int kMargin = 12;
constexpr int kCellWidth = 64;
constexpr int kGroupGap = 8;
constexpr int kHeadHeight = 34;
constexpr int kGroupHeight = 128;
constexpr double kKnobY = kHeadHeight + 66.0;
constexpr double kKnobRadius = 17.0;
constexpr double kRingRadius = 23.0;
constexpr double kWholeTurn = 160.0; // of a drag from one end to the other

constexpr double kFinePart = 0.1;
constexpr double kEndAngle = 0.75 * std::numbers::pi;

constexpr Colour kTop = 0x2B3038;
constexpr Colour kBottom = 0x1E2228;
constexpr Colour kGroup = 0x343A44;
constexpr Colour kRing = 0x1A1D22;
constexpr Colour kRimLight = 0x59616F;
constexpr Colour kBody = 0x454C58;
constexpr Colour kBodyHeld = 0x566071;
constexpr Colour kAccent = 0xF0A63C;
constexpr Colour kPointer = 0xF4F1EA;
constexpr Colour kTitleText = 0xF0A63C;
constexpr Colour kQuietText = 0x8D96A5;
constexpr Colour kNameText = 0xD9DEE6;
constexpr Colour kValueText = 0xAEB7C4;

std::string ValueText(const SParameterInfo& inParameter, float inValue)
{
    std::array<char, 16> number{};
    inParameter.Format(static_cast<double>(inValue), number);
    return std::string(number.data()) + " " + inParameter.mUnit;
}
} // namespace

CKnobPanel::CKnobPanel(IEditedEffect& ioEffect, const char* inTitle, std::span<const SKnobGroup> inGroups)
    : mEffect(ioEffect), mTitle(inTitle), mGroups(inGroups)
{
    int x = kMargin;
    for (const SKnobGroup& group : mGroups)
    {
        for (std::size_t i = 0; i < group.mCount; ++i, x += kCellWidth)
            mKnobs.push_back({x + kCellWidth / 2.0, -1.0F}); // painted with no value yet
        x += kGroupGap;
    }
    mWidth = x - kGroupGap + kMargin;
}

int CKnobPanel::Height() const noexcept { return kHeadHeight + kGroupHeight + kMargin; }

void CKnobPanel::Press(int inX, int inY)
{
    Release();
    const auto hit =
        std::ranges::find_if(mKnobs, [=](const SKnob& inKnob)
                             { return std::hypot(inX - inKnob.mX, inY - kKnobY) <= kRingRadius + 3.0; });
    if (hit == mKnobs.end())
        return;
    const auto knob = static_cast<std::size_t>(hit - mKnobs.begin());
    mGrip = SGrip{knob, inY, static_cast<double>(mEffect.EditedValue(knob))};
    mEffect.BeginEdit(knob);
}

void CKnobPanel::Drag(int inY, bool inFine)
{
    if (!mGrip || inY == mGrip->mY)
        return;
    const double turn = (mGrip->mY - inY) / kWholeTurn * (inFine ? kFinePart : 1.0);
    mGrip->mY = inY;
    mGrip->mValue = std::clamp(mGrip->mValue + turn, 0.0, 1.0);
    mEffect.PerformEdit(mGrip->mKnob, static_cast<float>(mGrip->mValue));
}

void CKnobPanel::Release()
{
    if (mGrip)
    {
        const std::size_t knob = mGrip->mKnob;
        mGrip.reset();
        mEffect.EndEdit(knob);
    }
}

bool CKnobPanel::IsOutdated() const noexcept
{
    const auto held = mGrip ? std::optional(mGrip->mKnob) : std::nullopt;
    if (held != mPaintedGrip)
        return true;
    for (std::size_t i = 0; i < mKnobs.size(); ++i)
        if (mKnobs[i].mPainted != mEffect.EditedValue(i))
            return true;
    return false;
}

void CKnobPanel::Paint(CPixelCanvas& ioCanvas, std::vector<SPanelText>& outTexts)
{
    outTexts.clear();
    ioCanvas.Fill(kTop, kBottom);
    outTexts.push_back({kMargin + 44, 22, kTitleText, mTitle});
    outTexts.push_back({mWidth - kMargin - 107, 22, kQuietText, "drag up or down, with shift finely"});
    int left = kMargin;
    for (const SKnobGroup& group : mGroups)
    {
        const int width = kCellWidth * static_cast<int>(group.mCount);
        const int right = left + width;
        ioCanvas.Box({left + 0.0, kHeadHeight + 0.0}, {right + 0.0, kHeadHeight + kGroupHeight + 0.0}, 6.0,
                     kGroup);
        outTexts.push_back({left + width / 2, kHeadHeight + 18, kQuietText, group.mTitle});
        left = right + kGroupGap;
    }
    for (std::size_t i = 0; i < mKnobs.size(); ++i)
        PaintKnob(i, ioCanvas, outTexts);
    mPaintedGrip = mGrip ? std::optional(mGrip->mKnob) : std::nullopt;
}

void CKnobPanel::PaintKnob(std::size_t inKnob, CPixelCanvas& ioCanvas, std::vector<SPanelText>& outTexts)
{
    SKnob& knob = mKnobs[inKnob];
    const bool isHeld = mGrip && mGrip->mKnob == inKnob;
    knob.mPainted = mEffect.EditedValue(inKnob);
    const SPoint centre{knob.mX, kKnobY};
    const double angle = kEndAngle * (2.0 * static_cast<double>(knob.mPainted) - 1.0);
    const auto towards = [&](double inRadius) {
        return SPoint{centre.mX + inRadius * std::sin(angle), centre.mY - inRadius * std::cos(angle)};
    };

    ioCanvas.Arc(centre, kRingRadius, 4.0, -kEndAngle, kEndAngle, kRing);
    ioCanvas.Arc(centre, kRingRadius, 4.0, -kEndAngle, angle, kAccent);
    ioCanvas.Disc({centre.mX, centre.mY + 2.0}, kKnobRadius, kRing); // its shadow
    ioCanvas.Disc(centre, kKnobRadius, kRimLight);
    ioCanvas.Disc(centre, kKnobRadius - 1.0, isHeld ? kBodyHeld : kBody);
    ioCanvas.Line(towards(6.0), towards(kKnobRadius - 4.0), 3.0, kPointer);

    const SParameterInfo& parameter = mEffect.EditedParameters()[inKnob];
    const int x = static_cast<int>(knob.mX);
    outTexts.push_back({x, kHeadHeight + 106, kNameText, parameter.mName});
    outTexts.push_back(
        {x, kHeadHeight + 120, isHeld ? kAccent : kValueText, ValueText(parameter, knob.mPainted)});
}
