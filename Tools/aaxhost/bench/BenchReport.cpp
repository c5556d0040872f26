#include "Tools/aaxhost/bench/ModuleBench.h"

#include <fmt/format.h>
#include <iterator>
#include <nlohmann/json.hpp>

namespace
{
using Json = nlohmann::ordered_json;

Json OrNull(const std::optional<double>& inValue) { return inValue ? Json(*inValue) : Json(nullptr); }

double InKilobytes(double inBytes) { return inBytes / 1024.0; }
} // namespace

std::string BenchAsText(const SBenchResults& inResults)
{
    std::string text = inResults.mName + "\n\nOne block, microseconds\n";
    auto out = std::back_inserter(text);
    for (const SBlockCost& cost : inResults.mBlocks)
    {
        fmt::format_to(out, "  {:4} frames   {:10.3f} through the module", cost.mFrames, cost.mModule);
        if (cost.mBare && cost.mRatio)
            fmt::format_to(out, "   {:10.3f} bare   {:8.4f} times", *cost.mBare, *cost.mRatio);
        fmt::format_to(out, "\n");
    }
    if (!inResults.mPackets.empty())
        fmt::format_to(out, "\nMIDI in a block of 64 frames, microseconds\n");
    for (const SPacketCost& cost : inResults.mPackets)
        fmt::format_to(out, "  {:4} packets  {:10.3f}\n", cost.mPackets, cost.mModule);
    fmt::format_to(out, "\nInstances in one call, microseconds an instance and block of 64 frames\n");
    for (const SInstancesCost& cost : inResults.mInstances)
        fmt::format_to(out, "  {:4}          {:10.3f}\n", cost.mInstances, cost.mModule);
    fmt::format_to(out,
                   "\nDescription    {:10.3f} ms\nCreation       {:10.3f} ms\nDeletion       {:10.3f} ms\n",
                   inResults.mDescription, inResults.mCreation, inResults.mDeletion);
    if (inResults.mUpdate && inResults.mCoefficients)
        fmt::format_to(out, "Update         {:10.3f} us, of {} parameters\nCoefficients   {:10.3f} us\n",
                       *inResults.mUpdate, inResults.mParameters, *inResults.mCoefficients);
    fmt::format_to(out, "State saved    {:10.3f} ms, {} bytes\nState loaded   {:10.3f} ms\n", inResults.mSave,
                   inResults.mStateBytes, inResults.mLoad);
    if (inResults.mMemory)
        fmt::format_to(out, "Memory         {:10.1f} KB an instance, with this host's own objects\n",
                       InKilobytes(*inResults.mMemory));
    if (inResults.mBareMemory)
        fmt::format_to(out, "  of the plug-in {:8.1f} KB\n", InKilobytes(*inResults.mBareMemory));
    for (const std::string& note : inResults.mNotes)
        fmt::format_to(out, "{}\n", note);
    return text;
}

std::string BenchAsJson(const SBenchResults& inResults)
{
    Json json;
    json["name"] = inResults.mName;
    json["blocks"] = Json::array();
    for (const SBlockCost& cost : inResults.mBlocks)
        json["blocks"].push_back({{"frames", cost.mFrames},
                                  {"moduleMicroseconds", cost.mModule},
                                  {"bareMicroseconds", OrNull(cost.mBare)},
                                  {"ratio", OrNull(cost.mRatio)}});
    json["packets"] = Json::array();
    for (const SPacketCost& cost : inResults.mPackets)
        json["packets"].push_back({{"packets", cost.mPackets}, {"moduleMicroseconds", cost.mModule}});
    json["instances"] = Json::array();
    for (const SInstancesCost& cost : inResults.mInstances)
        json["instances"].push_back(
            {{"instances", cost.mInstances}, {"moduleMicrosecondsEach", cost.mModule}});
    json["descriptionMilliseconds"] = inResults.mDescription;
    json["creationMilliseconds"] = inResults.mCreation;
    json["deletionMilliseconds"] = inResults.mDeletion;
    json["parameters"] = inResults.mParameters;
    json["updateMicroseconds"] = OrNull(inResults.mUpdate);
    json["coefficientsMicroseconds"] = OrNull(inResults.mCoefficients);
    json["stateBytes"] = inResults.mStateBytes;
    json["saveMilliseconds"] = inResults.mSave;
    json["loadMilliseconds"] = inResults.mLoad;
    json["memoryBytes"] = OrNull(inResults.mMemory);
    json["bareMemoryBytes"] = OrNull(inResults.mBareMemory);
    json["notes"] = inResults.mNotes;
    return json.dump(2) + "\n";
}
