#pragma once
#include "Tools/inspector/ProbePlugin.h"

#include <cstdint>
#include <string>
#include <vector>

/** What the report shows beside the checks. Where `mProblem` says something, the rest of that part is empty.
 */

struct SReportStem
{
    std::string mName;
    int mChannels = 0;
};

struct SReportParameter
{
    std::string mID;
    std::string mName;
    double mDefault = 0.0; // normalized
    std::string mText;     // of the default
    int mSteps = 0;
    bool mAutomatable = false;
};

struct SReportIdentity
{
    std::string mProblem;
    std::string mName;
    std::string mManufacturer;
    std::string mEffectID;
    std::string mVersion; // the plug-in's own number
    std::string mManufacturerCode;
    std::string mProductCode;
    std::string mPluginCode;
    int mInputs = 0; // channels
    int mOutputs = 0;
    std::vector<SReportStem> mAuxStems;
    std::vector<std::string> mMidiNodes;
    int mLatency = 0;                   // samples, as reported
    std::vector<std::string> mFeatures; // of the product
    std::vector<SReportParameter> mParameters;
};

/** A rendered test signal of the first output. */
struct SReportSignal
{
    std::string mTitle;
    double mSeconds = 0.0;
    std::vector<double> mLowest; // of each column of the picture
    std::vector<double> mHighest;
    std::vector<double> mSpectrum; // dB
    double mLevel = 0.0;           // dB of full scale, of all of it
    bool mIsImpulse = false;       // too short to be seen but on a scale of decibels
    int mColumns = 0;              // of the spectrogram
    int mRows = 0;
    std::vector<double> mSpectrogram; // dB, a column after the other, from low frequencies up
};

struct SReportSignals
{
    std::string mProblem;
    double mRate = 0.0; // Hz
    std::vector<SReportSignal> mSignals;
    std::vector<double> mImpulse; // the first samples of the answer to an impulse; empty for an instrument
};

struct SReportAutomation
{
    std::string mProblem;
    std::string mParameter;
    double mSeconds = 0.0;
    std::vector<double> mSent;     // normalized, evenly spread
    std::vector<double> mRendered; // level in dB, as many
};

struct SReportCost
{
    std::string mProblem;
    std::vector<int> mBlocks;    // frames
    std::vector<double> mModule; // microseconds a block, the median of many
    std::vector<double> mBare;   // the wrapped plug-in alone; empty when it cannot be loaded by itself
    std::string mBareProblem;
};

/** Of a block of so many frames, in percent. */
constexpr double ShareOfRealTime(double inMicroseconds, int inFrames, double inRate)
{
    return 100.0 * inMicroseconds * 1e-6 * inRate / inFrames;
}

/** A parameter of the wrapped plug-in with what the plug-in itself writes for its values. */
struct SReportTexts
{
    std::string mName;
    std::string mUnit;
    std::string mDefault;
    std::string mAtZero;
    std::string mAtHalf;
    std::string mAtOne;
};

struct SReportParameterTexts
{
    std::string mProblem;
    std::vector<SReportTexts> mParameters; // by their index in the plug-in

    /** Of the module's parameter with that identifier; null where it is not one of the plug-in's. */
    const SReportTexts* Find(const std::string& inID) const;
};

struct SReportSweptParameter
{
    std::string mID;
    std::string mName;
    std::vector<double> mLevels; // dB
    bool mIsAudible = false;     // the level moves further than by itself
};

/** The level of the first output over each parameter, the others where they are at the start. */
struct SReportSweep
{
    std::string mProblem;
    std::vector<double> mValues; // normalized: where the level was taken
    std::vector<SReportSweptParameter> mParameters;
    int mAutomatable = 0; // parameters that there are; of those that time or number left out nothing is known
    double mSpread = 0.0; // dB by which the level moves by itself
    bool mIsPlayed = false; // with a note; else with noise
    double mSettling = 0.0; // seconds between the change of a value and its level
    std::string mCut;       // why some were left out
};

struct SReportLatencyPoint
{
    double mRate = 0.0; // Hz
    int mBlock = 0;     // frames
    int mReported = 0;  // samples
    int mMeasured = -1; // samples until an impulse comes out; -1: none does
};

struct SReportLatency
{
    std::string mProblem;
    std::vector<SReportLatencyPoint> mPoints;
    std::string mCut; // why some were left out
};

struct SReportEditor
{
    std::string mProblem;
    int mWidth = 0;
    int mHeight = 0;
    std::string mPngBase64;
};

struct SReportMaterial
{
    SReportIdentity mIdentity;
    SReportSignals mSignals;
    SReportAutomation mAutomation;
    SReportCost mCost;
    SReportEditor mEditor;
    SReportSweep mSweep;
    SReportLatency mLatency;
    SReportParameterTexts mTexts;
    SProbeResult mPlugin;  // as vst2probe tells it
    double mSeconds = 0.0; // that all of it took
};
