#pragma once
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
    int mLatency = 0; // samples, as reported
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
};
