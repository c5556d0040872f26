#include "Source/CPluginParameter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace
{
/**
 * Plays what happens to a parameter, a word each: "r.3" is a request, "x.3" one that the host refuses, "u.3"
 * an update that the plug-in is to get, "a.3" one that is to be taken for an answer, "g" a value that the
 * plug-in is given in another way, "|" a long time without anything, "o.3" one after which the plug-in is to
 * get that value.
 */
void Play(const std::string& inEvents)
{
    SCOPED_TRACE(inEvents);
    CPluginParameter parameter;
    const auto restAWhile = [&]
    {
        std::optional<float> owed;
        for (int i = 0; i < CPluginParameter::kQuietBeats && !owed; ++i)
            owed = parameter.TimerBeat();
        return owed;
    };
    std::istringstream words(inEvents);
    for (std::string word; words >> word;)
    {
        SCOPED_TRACE(word);
        const double value = word.size() > 1 ? std::stod(word.substr(1)) : 0.0;
        switch (word[0])
        {
        case 'r': parameter.NoteRequest(value); break;
        case 'x': parameter.TakeBack(parameter.NoteRequest(value)); break;
        case 'g': parameter.NoteUpdate(); break;
        case '|': EXPECT_EQ(restAWhile(), std::nullopt); break;
        case 'o': EXPECT_EQ(restAWhile(), static_cast<float>(value)); break;
        default: EXPECT_EQ(parameter.Settle(value), word[0] == 'a');
        }
    }
}

std::string Repeated(const std::string& inWord, int inTimes)
{
    std::string words;
    for (int i = 0; i < inTimes; ++i)
        words += inWord + std::to_string(i) + "e-3 ";
    return words;
}

TEST(PluginParameter, AnswersAreToldFromTheHostsOwnUpdates)
{
    const std::string rows[] = {
        "u.5",                                 // nobody asked
        "r.1 a.1 u.1",                         // answered twice
        "r.1 r.2 r.3 a.1 a.2 a.3",             // one by one
        "r.1 r.2 r.3 a.3 u.1 u.2",             // only the last; those before it are settled
        "r.1 u.5 u.1",                         // the host has moved it: too late
        "r.1 r.2 u.5 a.1 u.2",                 // it will end with the last one
        "r.1 u.5 r.2 a.1 a.2",                 // and with what the plug-in has
        "u.5 r.4 u.6 r.5 a.4 a.5",             // steps of automation that the plug-in rounds
        "r.1 g u.1",                           // given in another way since
        "r.25 r.25 r.5 r.5 a.25 a.25 a.5 a.5", // the same again, one by one
        "r0 r1 r0 a0 a1 a0",                   // there and back, one by one
        "r0 r1 r0 a0 a1 o1 u1",    // only the last was answered, and then it moved: found out late
        "r0 r1 r0 a0 o0 u1",       // the same, found out early
        "r.1 r.2 r.3 u.5 a.2 o.2", // nothing was answered, and the host moves as if it were
        "r.1 r.2 | u.1 r.1 a.1",   // nothing is answered
        "x.7 r.3 x.7 a.3 u.7",     // refused
        "r.5 a.5000009 r.5 a.4999991 r.5 u.500003", // as near as the host's arithmetic leaves it
        "r1 a1.0000001 r0 a-0.0000001",             //
        "r7 a1 r-3 a0 rnan a0 rinf a1",             // what the host is asked for instead
        "r1 unan r0 unan r1 uinf r0 u-inf r1 u1.5", // no number is an answer
    };
    for (const std::string& events : rows)
        Play(events);
}

TEST(PluginParameter, FullTheAnswersOfWhatWasNotKeptGoToThePluginAndNothingIsSwallowedLater)
{
    const std::string full = Repeated("r", CPluginParameter::kCapacity);
    Play(full + "r.9 r.91 " + Repeated("a", CPluginParameter::kCapacity) + "u.9 u.91 r.1 a.1");
    Play(full + "r.9 r.91 u.91 | " + Repeated("u", CPluginParameter::kCapacity) + "r.1 a.1");
    Play(full + "r.9 a0 r.8 u.9 u.8");
}

TEST(PluginParameter, FullReportsArePutOffUntilAllIsSettled)
{
    CPluginParameter parameter;
    for (int i = 0; i < CPluginParameter::kCapacity; ++i)
    {
        EXPECT_FALSE(parameter.PutsOff());
        (void)parameter.NoteRequest(i / 100.0);
    }
    EXPECT_TRUE(parameter.PutsOff());
    EXPECT_FALSE(parameter.Settle(0.9)); // the host's own
    EXPECT_TRUE(parameter.Settle((CPluginParameter::kCapacity - 2) / 100.0));
    EXPECT_FALSE(parameter.TakePutOff());
    EXPECT_TRUE(
        parameter.Settle((CPluginParameter::kCapacity - 1) / 100.0)); // late, and yet not the last word
    EXPECT_TRUE(parameter.TakePutOff());
    EXPECT_FALSE(parameter.TakePutOff());
}

TEST(PluginParameter, AHundredTimesItsCapacityComesAround)
{
    CPluginParameter parameter;
    for (int i = 0; i < 100 * CPluginParameter::kCapacity; ++i)
    {
        const double value = (i % 97) / 97.0;
        parameter.NoteRequest(value);
        ASSERT_TRUE(parameter.Settle(value)) << i;
        ASSERT_FALSE(parameter.Settle(value)) << i;
    }
}

TEST(PluginParameter, ReportsOfEightThreadsAreAnsweredOnceEach)
{
    CPluginParameter parameter;
    std::vector<std::jthread> threads;
    std::atomic<int> swallowed = 0;
    for (int thread = 0; thread < 8; ++thread)
        threads.emplace_back(
            [&, value = thread / 8.0]
            {
                // A host that answers inside the request: not more than eight wait.
                for (int i = 0; i < 10'000; ++i)
                {
                    parameter.NoteRequest(value);
                    swallowed += parameter.Settle(value) ? 1 : 0;
                }
            });
    threads.clear();
    EXPECT_GT(swallowed.load(), 0);
    EXPECT_LE(swallowed.load(), 80'000);
    for (int beat = 0; beat < CPluginParameter::kQuietBeats; ++beat)
        (void)parameter.TimerBeat(); // what was settled with a newer one of the same value
    EXPECT_FALSE(parameter.IsWaiting());
}
} // namespace
