#include "Tools/aaxhost/check/CDirectRig.h"
#include "Tools/aaxhost/check/Comparison.h"
#include "Tools/aaxhost/check/EditorSteps.h"
#include "Tools/aaxhost/check/Figures.h"
#include "Tools/aaxhost/check/StateSteps.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fmt/format.h>
#include <functional>
#include <optional>
#include <span>
#include <utility>

// Whether each feature on the plug-in's side works with this plug-in: what the module does is compared with
// what the same plug-in does when it is called directly and gets what the feature promises.
namespace
{
constexpr double kSeconds = 2.0;

constexpr double kTempos[] = {120.0, 90.0}; // beats per minute

template <class Rig>
void PlayAtTempo(Rig& ioRig, double inTempo)
{
    STransportState& transport = ioRig.Transport();
    transport.mTempo = inTempo;
    transport.mSamplePosition = 10 * static_cast<std::int64_t>(kCheckRate); // in the midst of a song
    transport.mLooping = true;
    transport.mLoopEndTick = 64LL * CHostTransport::kTicksPerQuarter;
    ioRig.Play(kSeconds);
}

/** Values that a plug-in's sound depends on the tempo with: those that it starts with, else others, since
 * many are synchronous only when a switch is on. Ends the check where none are found. */
SStart TempoState(CCheckContext& ioContext, const SServices& inServices, std::array<Sound, 2>& outSound)
{
    constexpr std::uint32_t attempts = 5;
    SStart state = StartOf(ioContext);
    for (std::uint32_t attempt = 0; attempt < attempts; ++attempt)
    {
        const auto hear = [&](double tempo)
        { return HearPlugin(ioContext, inServices, state, [&](auto& rig) { PlayAtTempo(rig, tempo); }); };
        const SHeard first = hear(kTempos[0]);
        outSound = {first.mSound, hear(kTempos[1]).mSound};
        if (!first.mAskedForTime)
            break;
        if (outSound[0] != outSound[1])
        {
            if (hear(kTempos[0]).mSound == outSound[0])
                return state;
            throw SCheckEnd{SFinding::Skipped(kUnsteady)};
        }
        CSequence sequence(60 + attempt);
        std::ranges::generate(state.mValues, [&] { return sequence.Fraction(); });
    }
    throw SCheckEnd{SFinding::Skipped("Its sound does not depend on the tempo.")};
}

SFinding Time(CCheckContext& ioContext)
{
    ioContext.NeedFeature("TIME");
    std::array<Sound, 2> plugin;
    std::array<Sound, 2> module;
    const SStart state = TempoState(ioContext, ServicesOf(ioContext), plugin);
    for (std::size_t i = 0; i < 2; ++i)
        module[i] = HearModule(ioContext,
                               [&](CRig& rig)
                               {
                                   SetValues(rig.Instance(), state.mValues);
                                   PlayAtTempo(rig, kTempos[i]);
                               })
                        .mSound;
    if (module[0] == module[1])
        return SFinding::Failed(fmt::format("At {} and at {} beats per minute the plug-in called directly "
                                            "sounds different, and the module sounds the same.",
                                            kTempos[0], kTempos[1]));
    for (std::size_t i = 0; i < 2; ++i)
        if (const std::string other = OtherSound(plugin[i], module[i]); !other.empty())
            return SFinding::Failed(fmt::format("At {} beats per minute the module does not sound as the "
                                                "plug-in called directly with the whole time record: {}.",
                                                kTempos[i], other));
    return SFinding::Passed();
}

/** Performs with and without a service of the host. */
SFinding CompareService(CCheckContext& ioContext, bool SServices::*inService, const char* inSameAnyway,
                        const char* inDiffers)
{
    const SServices with = ServicesOf(ioContext);
    SServices without = with;
    without.*inService = false;
    const SStart start = StartOf(ioContext);
    const auto play = [](auto& rig) { rig.Play(kSeconds); };
    return Compare({[&] { return HearPlugin(ioContext, with, start, play); },
                    [&] { return HearPlugin(ioContext, without, start, play); },
                    [&] { return HearModule(ioContext, play); }, inSameAnyway, inDiffers});
}

SFinding HostAnswers(CCheckContext& ioContext)
{
    ioContext.NeedFeature("HOST_ANSWERS");
    return CompareService(ioContext, &SServices::mAnswers,
                          "What it renders and saves does not depend on the host's answers.",
                          "The module is not as the plug-in called directly whose questions are answered");
}

SFinding Idle(CCheckContext& ioContext)
{
    ioContext.NeedFeature("IDLE");
    return CompareService(ioContext, &SServices::mIdleTime,
                          "What it renders and saves does not depend on idle time.",
                          "The module is not as the plug-in called directly that gets the idle time that "
                          "it asks for");
}

/** As a host's player sends it, in packets of four bytes. */
void GiveExclusive(CRig& ioRig, std::span<const std::uint8_t> inMessage)
{
    constexpr std::size_t packet = 4;
    for (std::size_t i = 0; i < inMessage.size(); i += packet)
        ioRig.Midi()->Add(0, inMessage.subspan(i, std::min(packet, inMessage.size() - i)));
}

void GiveExclusive(CDirectRig& ioRig, std::span<const std::uint8_t> inMessage)
{
    ioRig.SendExclusive(inMessage);
}

SFinding Sysex(CCheckContext& ioContext)
{
    ioContext.NeedFeature("SYSEX");
    if (!ioContext.TakesMidi())
        return SFinding::Skipped("The plug-in takes no MIDI.");
    const std::vector<std::uint8_t> quieter = {0xF0, 0x7F, 0x7F, 4, 1, 0, 0x20, 0xF7}; // master volume
    std::vector<std::uint8_t> dump(600);
    CSequence sequence(51);
    std::ranges::generate(dump, [&] { return static_cast<std::uint8_t>(sequence.Below(128)); });
    dump.front() = 0xF0;
    dump[1] = 0x7D; // no maker's
    dump.back() = 0xF7;
    const auto perform = [&](bool givesMessages)
    {
        return [&, givesMessages](auto& rig)
        {
            rig.Play(0.25 * kSeconds);
            for (const std::span<const std::uint8_t> message :
                 {std::span(quieter), std::span(std::as_const(dump))})
            {
                if (givesMessages)
                    GiveExclusive(rig, message);
                rig.Render(64);
            }
            rig.Play(0.25 * kSeconds);
        };
    };
    const SServices services = ServicesOf(ioContext);
    const SStart start = StartOf(ioContext);
    return Compare({[&] { return HearPlugin(ioContext, services, start, perform(true)); },
                    [&] { return HearPlugin(ioContext, services, start, perform(false)); },
                    [&] { return HearModule(ioContext, perform(true)); },
                    "A system exclusive message changes nothing that it renders and saves.",
                    "After system exclusive messages in packets the module is not as the plug-in called "
                    "directly that got each as one"});
}

SFinding ToldLatency(CCheckContext& ioContext)
{
    ioContext.NeedFeature("LATENCY");
    constexpr std::int32_t most = 10 * static_cast<std::int32_t>(kCheckRate); // a longer one is a mistake
    CRig rig(ioContext);
    CDirectRig direct(ioContext, ServicesOf(ioContext), StartOf(ioContext));
    bool hasLatency = false;
    for (const char* when : {"After a second", "A second after its parameters were moved"})
    {
        rig.Play(1.0);
        direct.Play(1.0);
        (void)rig.Instance().Parameters().TimerWakeup(); // a host goes on without it too
        const std::int32_t delay = direct.Plugin().Effect().initialDelay;
        const std::int32_t latency = delay < 0 || delay > most ? 0 : delay;
        const std::int32_t told = rig.Instance().Host().Controller().State().mSignalLatency;
        if (told != latency)
            return SFinding::Failed(fmt::format("{} the plug-in called directly has a latency of {}; "
                                                "the host was told {}.",
                                                when, InSamples(latency, kCheckRate), told));
        hasLatency = hasLatency || latency != 0;
        MoveAll(rig.Instance(), 52);
        direct.SetValues(Values(rig.Instance()));
    }
    return hasLatency ? SFinding::Passed() : SFinding::Skipped("It has no latency.");
}

/** Notes that begin and end, with something after each block. */
template <class Rig, class AfterBlock>
void PlayNotes(Rig& ioRig, AfterBlock inAfterBlock)
{
    constexpr std::int32_t frames = 512;
    constexpr int notes = 6;
    constexpr int blocks = 32; // of a note
    ioRig.Feed(Noise(0.25F));
    for (int block = 0; block < notes * blocks; ++block)
    {
        const auto note = static_cast<std::uint8_t>(48 + 5 * (block / blocks));
        if (block % blocks == 0)
            ioRig.Send(17, 0x90, note, 100);
        else if (block % blocks == blocks / 2)
            ioRig.Send(33, 0x80, note, 64);
        ioRig.Render(frames);
        inAfterBlock(frames);
    }
}

std::vector<SMidiMessage> SentDirectly(CCheckContext& ioContext, const SStart& inStart)
{
    CDirectRig rig(ioContext, ServicesOf(ioContext), inStart);
    PlayNotes(rig, [](std::int32_t) {});
    return rig.Sent();
}

std::string InWords(const std::vector<SMidiMessage>& inMessages, std::size_t inIndex)
{
    if (inIndex >= inMessages.size())
        return "nothing";
    const SMidiMessage& message = inMessages[inIndex];
    const std::size_t shown = std::min<std::size_t>(message.mBytes.size(), 8);
    return fmt::format("{:02X} at frame {:.0f}", fmt::join(std::span(message.mBytes).first(shown), " "),
                       message.mSeconds * kCheckRate);
}

/** @return which message is the first that differs. */
std::optional<std::size_t> FirstOther(const std::vector<SMidiMessage>& inSome,
                                      const std::vector<SMidiMessage>& inOthers)
{
    const auto found = std::ranges::mismatch(inSome, inOthers,
                                             [](const SMidiMessage& a, const SMidiMessage& b)
                                             { return a.mSeconds == b.mSeconds && a.mBytes == b.mBytes; });
    if (found.in1 == inSome.end() && found.in2 == inOthers.end())
        return std::nullopt;
    return static_cast<std::size_t>(found.in1 - inSome.begin());
}

SFinding MidiOutput(CCheckContext& ioContext)
{
    ioContext.NeedFeature("MIDI_OUTPUT");
    constexpr AAX_CFieldIndex outputField = 24;
    const SStart start = StartOf(ioContext);
    bool saysSo = false;
    {
        CDirectRig direct(ioContext, ServicesOf(ioContext), start);
        for (const char* text : {"sendVstEvents", "sendVstMidiEvent"})
            saysSo = saysSo || direct.Plugin().CanDo(text);
    }
    if (!saysSo)
        return SFinding::Skipped("The plug-in does not say that it sends MIDI.");
    CRig rig(ioContext);
    const CHostMidiNode* node = nullptr;
    for (const SRenderCall::SNode& described : rig.Call().mNodes)
        if (described.mField == outputField && described.mType == AAX_eMIDINodeType_LocalOutput)
            node = described.mNode.get();
    if (node == nullptr)
        return SFinding::Failed(
            fmt::format("The plug-in says that it sends MIDI, and field {} is no output node.", outputField));
    const std::vector<SMidiMessage> expected = SentDirectly(ioContext, start);
    if (FirstOther(SentDirectly(ioContext, start), expected))
        return SFinding::Skipped(kUnsteady);
    CPostedMidi posted(kCheckRate);
    PlayNotes(rig, [&](std::int32_t frames) { posted.TakeBlock(*node, rig.Position() - frames, frames); });
    posted.Finish();
    if (const std::string fault = posted.Fault(); !fault.empty())
        return SFinding::Failed(fault);
    if (const auto other = FirstOther(expected, posted.Messages()))
        return SFinding::Failed(
            fmt::format("Of what the plug-in called directly sends, message {} is {}; the host gets {}.",
                        *other + 1, InWords(expected, *other), InWords(posted.Messages(), *other)));
    return expected.empty() ? SFinding::Skipped("It sends nothing of notes and noise.") : SFinding::Passed();
}

/** What a plug-in called directly is like after it got a chunk. */
struct SLoaded
{
    std::vector<char> mChunk;
    std::vector<double> mValues;
    bool operator==(const SLoaded&) const = default;
};

SLoaded LoadDirectly(CDirectRig& ioRig, std::vector<char> inChunk, VstIntPtr inProgram, bool inProgramFirst)
{
    CDrivenPlugin& plugin = ioRig.Plugin();
    if (inProgramFirst)
        (void)plugin.Dispatch(effSetProgram, 0, inProgram); // the interface gives the result no meaning
    (void)plugin.SetChunk(0, inChunk);                      // nor do plug-ins agree on this one's
    if (!inProgramFirst)
        (void)plugin.Dispatch(effSetProgram, 0, inProgram);
    SLoaded loaded{plugin.GetChunk(0), {}};
    for (std::int32_t i = 0; i < plugin.Effect().numParams; ++i)
        loaded.mValues.push_back(std::clamp(static_cast<double>(plugin.GetParameter(i)), 0.0, 1.0));
    return loaded;
}

SFinding ProgramFirst(CCheckContext& ioContext)
{
    ioContext.NeedFeature("PROGRAM_FIRST");
    const SServices services = ServicesOf(ioContext);
    const SStart start = StartOf(ioContext);
    VstIntPtr program = 0; // in which every instance begins; a host cannot choose another
    {
        CDirectRig direct(ioContext, services, start);
        const AEffect& effect = direct.Plugin().Effect();
        if (effect.numPrograms < 2 || (effect.flags & effFlagsProgramChunks) == 0)
            return SFinding::Skipped("It keeps no chunk beside two or more programs.");
        program = direct.Plugin().Dispatch(effGetProgram);
    }
    const auto first = ioContext.MakeInstance();
    MoveAll(*first, 53);
    const SInstanceState saved = Take(ioContext, *first);
    const std::vector<char> chunk = PluginChunkOf(saved);
    const auto load = [&](bool programFirst)
    {
        CDirectRig direct(ioContext, services, start);
        return LoadDirectly(direct, chunk, program, programFirst);
    };
    const SLoaded expected = load(true);
    if (load(true) != expected)
        return SFinding::Skipped(kUnsteady);
    if (load(false) == expected)
        return SFinding::Skipped("Its programs do not overwrite its chunk.");

    const auto second = ioContext.MakeInstance();
    Give(ioContext, *second, saved);
    if (const auto moved = FirstMoved(*second, expected.mValues))
        return SFinding::Failed(
            fmt::format("A program overwrites the loaded chunk: {} is at {:.4f}, and with the program set "
                        "first at {:.4f}.",
                        moved->mName, moved->mNow, moved->mBefore));
    // Of a plug-in that does not save what it loaded the bytes say nothing.
    const std::string other =
        expected.mChunk == chunk ? OtherBytes(saved, Take(ioContext, *second)) : std::string();
    return other.empty() ? SFinding::Passed()
                         : SFinding::Failed(
                               fmt::format("A program overwrites the loaded chunk: saved again, {}.", other));
}

/** What the plug-in says its editor's size to be; empty where it says none. */
SViewSize RectangleOf(CDrivenPlugin& ioPlugin)
{
    ERect* rectangle = nullptr;
    (void)ioPlugin.Dispatch(effEditGetRect, 0, 0, &rectangle); // some answer 0 all the same
    return rectangle != nullptr
               ? SViewSize{rectangle->right - rectangle->left, rectangle->bottom - rectangle->top}
               : SViewSize();
}

/** Opens the editor of the plug-in called directly for some beats. @return the last size that it asked for
 * or took by itself. */
std::optional<SViewSize> SizeChange(CCheckContext& ioContext, CDirectRig& ioRig, int inBeats)
{
    const auto window = NeedWindow(ioContext);
    CDrivenPlugin& plugin = ioRig.Plugin();
    (void)plugin.Dispatch(effEditOpen, 0, 0, window->View()); // whether it opens shows in its size
    window->Show();
    std::optional<SViewSize> size;
    SViewSize last = RectangleOf(plugin);
    for (int i = 0; i < inBeats; ++i)
    {
        window->HandleEvents(CEditorView::kTimerInterval);
        (void)plugin.Dispatch(effEditIdle);
        if (const auto wish = ioRig.TakeSizeWish())
            size = wish;
        const SViewSize now = RectangleOf(plugin);
        if (!now.IsEmpty() && now != std::exchange(last, now))
            size = now;
    }
    (void)plugin.Dispatch(effEditClose);
    return size;
}

SFinding Resize(CCheckContext& ioContext)
{
    ioContext.NeedFeature("RESIZE");
    constexpr int beats = 20;
    const auto window = NeedWindow(ioContext);
    std::optional<SViewSize> expected;
    {
        CDirectRig direct(ioContext, ServicesOf(ioContext), StartOf(ioContext));
        if ((direct.Plugin().Effect().flags & effFlagsHasEditor) == 0)
            return SFinding::Skipped("The plug-in has no editor.");
        expected = SizeChange(ioContext, direct, beats);
    }
    if (!expected)
        return SFinding::Skipped("Its editor kept its size.");
    const auto instance = ioContext.MakeInstance();
    const auto view = OpenView(*instance, *window);
    SViewSize asked;
    for (int i = 0; i < 2 * beats && (asked != *expected || view->Size() != *expected); ++i)
    {
        Tick(*view, 1);
        if (const auto request = instance->Host().ViewContainer().RequestedSize())
            asked = {static_cast<int>(request->mHorizontal), static_cast<int>(request->mVertical)};
    }
    if (asked == *expected && view->Size() == *expected)
        return SFinding::Passed();
    return SFinding::Failed(fmt::format(
        "The editor of the plug-in called directly becomes {} by {} pixels; the host was asked for {} by {}, "
        "and its view has {} by {}.",
        expected->mWidth, expected->mHeight, asked.mWidth, asked.mHeight, view->Size().mWidth,
        view->Size().mHeight));
}
} // namespace

std::span<const SCheck> FeatureChecks()
{
    static constexpr SCheck kChecks[] = {
        {"features.time", "TIME: the plug-in follows the tempo, as it does when it is called directly.", 2,
         &Time, EAlone::Compared},
        {"features.latency", "LATENCY: the host knows the plug-in's latency, also one that changes.", 1,
         &ToldLatency, EAlone::Compared},
        {"features.host-answers", "HOST_ANSWERS: the plug-in works as one whose questions are answered.", 3,
         &HostAnswers, EAlone::Compared},
        {"features.idle", "IDLE: the plug-in gets the idle time that it asks for.", 3, &Idle,
         EAlone::Compared},
        {"features.resize", "RESIZE: the host's view takes the size that the editor asks for.", 3, &Resize,
         EAlone::Compared},
        {"features.midi-output", "MIDI_OUTPUT: what the plug-in sends reaches the host, frame by frame.", 2,
         &MidiOutput, EAlone::Compared},
        {"features.sysex", "SYSEX: a message in packets does what it does as one.", 3, &Sysex,
         EAlone::Compared},
        {"features.program-first", "PROGRAM_FIRST: a program does not overwrite a loaded chunk.", 2,
         &ProgramFirst, EAlone::Compared},
    };
    return kChecks;
}
