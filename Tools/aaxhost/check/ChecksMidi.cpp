#include "Tools/aaxhost/check/CRig.h"
#include "Tools/aaxhost/check/Figures.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace
{
constexpr float kAudible = 1e-4F; // -80 dB
constexpr std::uint8_t kNote = 60;

void NeedMidi(CCheckContext& ioContext)
{
    if (!ioContext.TakesMidi())
        throw SCheckEnd{SFinding::Skipped("The plug-in takes no MIDI.")};
}

/** Plays a note for half a second over silent inputs. @return its peak; ends the check when there is none. */
float NeedNote(CRig& ioRig)
{
    ioRig.RenderSeconds(0.1);
    const float idle = ioRig.TakePeak();
    ioRig.Send(0, 0x90, kNote, 110);
    ioRig.RenderSeconds(0.5);
    const float peak = ioRig.TakePeak();
    if (peak <= kAudible || peak <= 2.0F * idle)
        throw SCheckEnd{SFinding::Skipped("The plug-in makes no sound of a note.")};
    return peak;
}

SFinding NoteSounds(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    if (!ioContext.IsInstrument())
        return SFinding::Skipped("The plug-in is no instrument, so notes need not make a sound.");
    CRig rig(ioContext);
    rig.Send(0, 0x90, kNote, 110);
    rig.RenderSeconds(1.0);
    const float peak = rig.TakePeak();
    return peak > kAudible
               ? SFinding::Passed()
               : SFinding::Warning(fmt::format(
                     "A note makes no sound with the settings that an instance starts with: in a second its "
                     "peak is {}, and {} would be heard.",
                     InDecibels(static_cast<double>(peak)), InDecibels(static_cast<double>(kAudible))));
}

SFinding NoteEnds(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    CRig rig(ioContext);
    const float peak = NeedNote(rig);
    rig.Send(0, 0x80, kNote, 64);
    const int seconds = ioContext.Scaled(8, 60);
    const float silent = std::max(kAudible, 0.001F * peak);
    float now = peak;
    for (int second = 0; second < seconds && now > silent; ++second)
    {
        rig.RenderSeconds(1.0);
        now = rig.TakePeak();
    }
    if (now <= silent)
        return SFinding::Passed();
    return SFinding::Failed(
        fmt::format("A note still sounds {} seconds after it was released, at {} where it had {}.", seconds,
                    InDecibels(static_cast<double>(now)), InDecibels(static_cast<double>(peak))));
}

/** What is left of a note 6 seconds after a controller that ends notes. */
struct SLeft
{
    int mController;
    float mPeak; // of the note
    float mNow;
    bool HasEnded() const { return mNow <= std::max(kAudible, 0.01F * mPeak); }
    std::string Words() const
    {
        return fmt::format("6 seconds after controller {} the note is at {} where it had {}", mController,
                           InDecibels(static_cast<double>(mNow)), InDecibels(static_cast<double>(mPeak)));
    }
};

SLeft LeftAfter(CCheckContext& ioContext, int inController)
{
    CRig rig(ioContext);
    SLeft left{inController, NeedNote(rig), 0.0F};
    rig.Send(0, 0xB0, static_cast<std::uint8_t>(inController), 0);
    rig.RenderSeconds(6.0);
    (void)rig.TakePeak();
    rig.RenderSeconds(0.5);
    left.mNow = rig.TakePeak();
    return left;
}

SFinding AllNotesOff(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    const SLeft sound = LeftAfter(ioContext, 120);
    const SLeft notes = LeftAfter(ioContext, 123);
    if (sound.HasEnded() && notes.HasEnded())
        return SFinding::Passed();
    if (sound.HasEnded() || notes.HasEnded()) // hosts send both
        return SFinding::Passed(
            fmt::format("One of the two ends a note: {}.", (sound.HasEnded() ? notes : sound).Words()));
    return SFinding::Warning(
        fmt::format("Neither \"all sound off\" nor \"all notes off\" ends a note: {}, and {}.", sound.Words(),
                    notes.Words()));
}

SFinding Timing(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    const auto onset = [&](std::uint32_t offset)
    {
        CRig rig(ioContext);
        rig.Record();
        rig.Send(offset, 0x90, kNote, 127);
        rig.RenderFrames(8192, 512);
        const auto& channels = rig.Recording();
        for (std::size_t i = 0; !channels.empty() && i < channels.front().size(); ++i)
            if (std::abs(channels.front()[i]) > 1e-7F)
                return static_cast<std::int64_t>(i);
        throw SCheckEnd{SFinding::Skipped("The plug-in makes no sound of a note.")};
    };
    const std::int64_t early = onset(0);
    const std::int64_t late = onset(300);
    if (late - early == 300)
        return SFinding::Passed();
    return SFinding::Warning(fmt::format("A note 300 frames later in its block sounds {} later; at the "
                                         "block's first frame it begins after {}.",
                                         InSamples(late - early, kCheckRate), InSamples(early, kCheckRate)));
}

SFinding Flood(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    CRig rig(ioContext);
    const int packets = ioContext.Scaled(300, 10000);
    CSequence sequence(3);
    for (int block = 0; block < 4; ++block)
    {
        for (int i = 0; i < packets; ++i)
            rig.Send(static_cast<std::uint32_t>(i * 512 / packets), i % 2 == 0 ? 0x90 : 0x80,
                     static_cast<std::uint8_t>(sequence.Below(128)), 100);
        rig.Render(512);
    }
    rig.RenderSeconds(0.2);
    rig.ExpectFinite(fmt::format("after blocks of {} MIDI messages", packets));
    return SFinding::Passed();
}

SFinding AllControllers(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    CRig rig(ioContext);
    rig.Send(0, 0x90, kNote, 100);
    for (const std::uint8_t value : {127, 0, 64})
        for (std::uint8_t controller = 0; controller < 128; ++controller)
        {
            rig.Send(0, static_cast<std::uint8_t>(0xB0 + controller % 16), controller, value);
            if (controller % 8 == 7)
                rig.Render(64);
        }
    rig.RenderSeconds(0.1);
    rig.ExpectFinite("after every controller went to its ends");
    return SFinding::Passed();
}

SFinding ChannelMessages(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    CRig rig(ioContext);
    for (std::uint8_t channel = 0; channel < 16; ++channel)
    {
        rig.Send(0, static_cast<std::uint8_t>(0x90 + channel), kNote, 100);
        rig.Send(8, static_cast<std::uint8_t>(0xE0 + channel), 0x7F, 0x7F); // pitch bend
        rig.Send(16, static_cast<std::uint8_t>(0xE0 + channel), 0, 0);
        rig.Send(24, static_cast<std::uint8_t>(0xD0 + channel), 127, 0);   // channel pressure
        rig.Send(32, static_cast<std::uint8_t>(0xA0 + channel), kNote, 1); // key pressure
        rig.Render(64);
        for (std::uint8_t program = 0; program < 128; program = static_cast<std::uint8_t>(program + 16))
            rig.Send(0, static_cast<std::uint8_t>(0xC0 + channel), program, 0);
        rig.Render(64);
        rig.Send(0, static_cast<std::uint8_t>(0x80 + channel), kNote, 0);
    }
    rig.RenderSeconds(0.1);
    rig.ExpectFinite("after bends, pressure and program changes");
    return SFinding::Passed();
}

SFinding Malformed(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    CRig rig(ioContext);
    CSequence sequence(5);
    for (int block = 0; block < 50; ++block)
    {
        for (int i = 0; i < 16; ++i)
        {
            AAX_CMidiPacket packet{};
            packet.mTimestamp = static_cast<std::uint32_t>(i);
            packet.mLength = sequence.Below(5);
            for (auto& byte : packet.mData)
                byte = static_cast<std::uint8_t>(sequence.Below(256));
            rig.Midi()->Add(packet);
        }
        rig.Render(64);
    }
    rig.RenderSeconds(0.1);
    rig.ExpectFinite("after messages that are no MIDI");
    return SFinding::Passed();
}

SFinding BlockEdges(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    CRig rig(ioContext);
    for (const std::int32_t frames : ioContext.Blocks({1, 7, 64, 1024}))
    {
        rig.Send(0, 0x90, kNote, 100);
        rig.Send(static_cast<std::uint32_t>(frames - 1), 0x80, kNote, 0);
        rig.Render(frames);
        rig.Send(static_cast<std::uint32_t>(frames), 0x90, kNote, 100); // the first frame of the next block
        rig.Send(100000, 0x80, kNote, 0);
        rig.Render(frames);
    }
    rig.RenderSeconds(0.1);
    rig.ExpectFinite("after messages at the edges of blocks and beyond");
    return SFinding::Passed();
}

SFinding ManyVoices(CCheckContext& ioContext)
{
    NeedMidi(ioContext);
    CRig rig(ioContext);
    for (std::uint8_t note = 0; note < 128; ++note)
        rig.Send(0, 0x90, note, 127);
    rig.RenderSeconds(0.2);
    for (std::uint8_t note = 0; note < 128; ++note)
        rig.Send(0, 0x80, note, 0);
    rig.RenderSeconds(0.2);
    rig.ExpectFinite("with all 128 notes on");
    return SFinding::Passed();
}
} // namespace

std::span<const SCheck> MidiChecks()
{
    static constexpr SCheck kChecks[] = {
        {"midi.note-sounds", "An instrument makes a sound of a note.", 1, &NoteSounds},
        {"midi.note-ends", "A released note ends.", 1, &NoteEnds},
        {"midi.all-notes-off", "\"All sound off\" or \"all notes off\" ends a note.", 2, &AllNotesOff},
        {"midi.timing", "A note sounds at its frame within the block.", 2, &Timing},
        {"midi.block-edges", "Messages at the edges of a block and beyond do no harm.", 2, &BlockEdges},
        {"midi.many-voices", "All 128 notes at once leave the sound finite.", 2, &ManyVoices},
        {"midi.controllers", "All controllers at their ends leave the sound finite.", 2, &AllControllers},
        {"midi.channel-messages", "Bends, pressure and program changes on all channels do no harm.", 2,
         &ChannelMessages},
        {"midi.flood", "Many more messages than usual in a block do no harm.", 3, &Flood},
        {"midi.malformed", "Messages that are no MIDI do no harm.", 4, &Malformed},
    };
    return kChecks;
}
