#include "Examples/synth/CSynthVoice.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{
constexpr int kUpdateInterval = 16; // samples; pitch and cutoff move too slowly for more
constexpr double kHighestStep = 0.45;
constexpr double kLowestCutoff = 20.0; // Hz
/** A chord of eight at full velocity stays well below full scale with it, in every port and program. */
constexpr double kVoiceGain = 0.25;
constexpr double kSubPortGain = 0.5; // sines of several voices add up to more than the other shapes
constexpr double kCross = 0.3;       // how much each oscillator is heard on the other side

/** What rounds a step of -2 at phase 0, over one sample to each side. */
double Edge(double inPhase, double inStep) noexcept
{
    if (inPhase < inStep)
    {
        const double t = inPhase / inStep;
        return t + t - t * t - 1.0;
    }
    if (inPhase > 1.0 - inStep)
    {
        const double t = (inPhase - 1.0) / inStep;
        return t * t + t + t + 1.0;
    }
    return 0.0;
}

double Wrapped(double inPhase) noexcept { return inPhase >= 1.0 ? inPhase - 1.0 : inPhase; }

double NoteFrequency(double inNote) noexcept { return 440.0 * std::exp2((inNote - 69.0) / 12.0); }
} // namespace

double CSynthVoice::COscillator::Next(double inStep, double inShape) noexcept
{
    const double half = Wrapped(mPhase + 0.5);
    const double startEdge = Edge(mPhase, inStep);
    const double saw = 2.0 * mPhase - 1.0 - startEdge;
    const double square = (mPhase < 0.5 ? 1.0 : -1.0) + startEdge - Edge(half, inStep);
    mPhase = Wrapped(mPhase + inStep);
    return saw + inShape * (0.7 * square - saw); // a square is that much louder
}

void CSynthVoice::CLowPass::Clear() noexcept
{
    mFirst = 0.0;
    mSecond = 0.0;
}

double CSynthVoice::CLowPass::Next(double inSample, double inG, double inDamping) noexcept
{
    const double high = (inSample - (inG + inDamping) * mFirst - mSecond) / (1.0 + inG * (inG + inDamping));
    const double band = inG * high + mFirst;
    const double low = inG * band + mSecond;
    mFirst = inG * high + band;
    mSecond = inG * band + low;
    return low;
}

void CSynthVoice::Start(std::uint8_t inChannel, std::uint8_t inNote, std::uint8_t inVelocity,
                        std::uint64_t inAge) noexcept
{
    mTargetGain = kVoiceGain * inVelocity / 127.0;
    if (!IsActive())
    {
        // Fixed phases: the same notes sound the same every time.
        mLeftOscillator.Restart(0.5);
        mRightOscillator.Restart(0.0);
        mSubPhase = 0.0;
        mLeftFilter.Clear();
        mRightFilter.Clear();
        mGain = mTargetGain;
        mFresh = true;
    }
    mChannel = inChannel;
    mNote = inNote;
    mAge = inAge;
    mKeyDown = true;
    mSustained = false;
    mSamplesToUpdate = 0;
    mEnvelope.Start();
}

void CSynthVoice::KeyUp(bool inSustained) noexcept
{
    mKeyDown = false;
    mSustained = inSustained;
    if (!inSustained)
        mEnvelope.Release();
}

void CSynthVoice::Release() noexcept
{
    mKeyDown = false;
    mSustained = false;
    mEnvelope.Release();
}

void CSynthVoice::Stop() noexcept
{
    mKeyDown = false;
    mSustained = false;
    mEnvelope.Stop();
}

bool CSynthVoice::Plays(std::uint8_t inChannel, std::uint8_t inNote) const noexcept
{
    return IsActive() && mChannel == inChannel && mNote == inNote;
}

void CSynthVoice::UpdateControls(const SVoiceControls& inControls) noexcept
{
    const double note = mNote + inControls.mTransposition;
    const double detune = 0.5 * inControls.mDetuneSemitones;
    const double highest = kHighestStep * inControls.mSampleRate;
    const auto stepOf = [&](double inNote)
    { return std::min(NoteFrequency(inNote), highest) / inControls.mSampleRate; };
    mLeftStep = stepOf(note - detune);
    mRightStep = stepOf(note + detune);
    mSubStep = stepOf(note - 12.0);

    const double octaves = inControls.mCutoffOctaves + inControls.mContourOctaves * mEnvelope.Level();
    const double cutoff = std::clamp(std::exp2(octaves), kLowestCutoff, highest);
    const double target = std::tan(std::numbers::pi * cutoff / inControls.mSampleRate);
    if (mFresh)
    {
        mFilterG = target;
        mFresh = false;
    }
    mFilterGStep = (target - mFilterG) / kUpdateInterval;
    mSamplesToUpdate = kUpdateInterval;
}

void CSynthVoice::Render(const SVoiceControls& inControls, SVoiceOutput& ioSum) noexcept
{
    if (mSamplesToUpdate == 0)
        UpdateControls(inControls);
    --mSamplesToUpdate;
    mFilterG += mFilterGStep;
    mGain += (mTargetGain - mGain) * inControls.mGainGlide;
    const double amplitude = mGain * mEnvelope.Next(inControls.mEnvelope);

    const double one = mLeftOscillator.Next(mLeftStep, inControls.mShape);
    const double two = mRightOscillator.Next(mRightStep, inControls.mShape);
    const double sub = std::sin(2.0 * std::numbers::pi * mSubPhase);
    mSubPhase = Wrapped(mSubPhase + mSubStep);

    const double left = one + kCross * (two - one);
    const double right = two + kCross * (one - two);
    // An emphasised filter is fed less, so that it gets no louder.
    const double drive = 0.4 + 0.3 * inControls.mDamping;
    const double body = inControls.mSubLevel * sub;
    ioSum.mMainLeft += amplitude * mLeftFilter.Next(drive * (left + body), mFilterG, inControls.mDamping);
    ioSum.mMainRight += amplitude * mRightFilter.Next(drive * (right + body), mFilterG, inControls.mDamping);
    ioSum.mDryLeft += amplitude * left;
    ioSum.mDryRight += amplitude * right;
    ioSum.mSub += kSubPortGain * amplitude * sub;
}
