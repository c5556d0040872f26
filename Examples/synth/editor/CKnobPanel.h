#pragma once
#include "Examples/synth/editor/CPixelCanvas.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

class IEditedEffect;

/** Knobs that stand together under a title: as many of the next parameters. */
struct SKnobGroup
{
    const char* mTitle;
    std::size_t mCount;
};

/** A text of a panel, in a type of about 13 pixels. */
struct SPanelText
{
    int mX = 0; // of its middle
    int mY = 0; // of its base line
    Colour mColour = 0;
    std::string mText;
};

/**
 * A row of knobs, one for each parameter, without the system's part of it: what it looks like and what the
 * pointer does with it. A knob is turned by dragging it up or down.
 *
 * Main thread only.
 */
class CKnobPanel
{
public:
    /** Both outlive the panel. */
    CKnobPanel(IEditedEffect& ioEffect, const char* inTitle, std::span<const SKnobGroup> inGroups);
    CKnobPanel(const CKnobPanel&) = delete;
    CKnobPanel& operator=(const CKnobPanel&) = delete;

    int Width() const noexcept { return mWidth; }
    int Height() const noexcept;

    /** The primary button goes down; an edit begins where there is a knob. */
    void Press(int inX, int inY);
    /** @param inFine turns it a tenth as far. */
    void Drag(int inY, bool inFine);
    /** Ends the edit; nothing without one. */
    void Release();

    /** Whether what was painted last is no longer what there is to see. */
    bool IsOutdated() const noexcept;
    void Paint(CPixelCanvas& ioCanvas, std::vector<SPanelText>& outTexts);

private:
    struct SKnob
    {
        double mX; // of its middle
        float mPainted;
    };
    struct SGrip
    {
        std::size_t mKnob;
        int mY;
        double mValue;
    };

    void PaintKnob(std::size_t inKnob, CPixelCanvas& ioCanvas, std::vector<SPanelText>& outTexts);

    IEditedEffect& mEffect;
    const char* mTitle;
    std::span<const SKnobGroup> mGroups;
    std::vector<SKnob> mKnobs;
    std::optional<SGrip> mGrip;
    std::optional<std::size_t> mPaintedGrip;
    int mWidth = 0;
};
