#include "Tools/aaxhost/check/ExplanationText.h"

#include "Tools/aaxhost/check/Explanation.h"

#include <fmt/format.h>
#include <sstream>

namespace
{
constexpr std::size_t kColumns = 100;

/** @param inFirst stands ahead of the text; further lines are indented as far. */
std::string Wrapped(const std::string& inFirst, const std::string& inText, std::size_t inIndent)
{
    std::string lines = inFirst;
    std::size_t column = inFirst.size();
    std::istringstream words(inText);
    bool isFirst = true;
    for (std::string word; words >> word; isFirst = false)
    {
        const bool fits = column + 1 + word.size() <= kColumns;
        if (!isFirst)
            lines += fits ? " " : "\n" + std::string(inIndent, ' ');
        column = isFirst ? column + word.size() : (fits ? column + 1 : inIndent) + word.size();
        lines += word;
    }
    return lines + '\n';
}

std::string Paragraph(const std::string& inText) { return Wrapped("", inText, 0) + '\n'; }

std::string Item(const std::string& inText) { return Wrapped("- ", inText, 2); }

std::string Introduction()
{
    return "# What the checks look at\n\n" +
           Paragraph(
               "`aaxhost check MODULE` drives a module as a host does. Each check below runs in a process "
               "of its own, with a limit of 20 seconds and another 20 for each step of strictness. This "
               "page is what `aaxhost check --explain '*' --markdown` writes; `aaxhost check --explain "
               "CHECK` says the same of one check, or of a group, in the terminal.") +
           Item("**Strictness** goes from 1, which is done in seconds, to 10; 5 is usual. A check runs from "
                "its "
                "own strictness on, and many do more of the same at a higher one: \"4 to 200 by the "
                "strictness\" "
                "is 4 at strictness 1 and 200 at 10.") +
           Item("**Results.** *passed*; *failed*, which a musician may lose work or sound by; *warning*, "
                "which breaks no session; *skipped*, where the plug-in has nothing to look at; *unseen*, "
                "where this "
                "machine could not look (an editor without a display); *unstable*, where a check that did "
                "not pass "
                "ended otherwise when it was tried once more.") +
           Item("**Whose it is.** What does not pass is repeated with the plug-in called directly. \"The "
                "plug-in's own\" means that the plug-in does so without the module, too, and is to be mended "
                "in it. \"Only through the module\" is a matter of the product's options and features, or of "
                "the module. The checks of the description are about the module, and those of the features "
                "compare it with the plug-in already: these two groups are not repeated. Where a damaged "
                "state is "
                "survived by the plug-in alone, or a comparison crashes, the check says that it could not be "
                "told: the damage hits other bytes, and either of the two may have crashed. What crashes or "
                "hangs through the module only is tried by turns, up to five times through it and four "
                "without.") +
           Item("**Exit codes.** 0: fit to ship. 1: not fit, something failed or was unstable. 2: wrong "
                "usage. 3: not known, nothing was checked or something was unseen. Warnings do not count.") +
           Item("**Where it ends for all.** Where the module does not open, or gives no instance, the checks "
                "that need one are skipped. A crash or a time beyond the limit fails the check in which it "
                "happened, whatever that check is about: `--in-process --only CHECK` runs it under a "
                "debugger.") +
           '\n' +
           Paragraph(
               "The plug-in is told a block size of 1,024 frames and gets no larger block; the module "
               "renders a larger one of the host in parts. Unless a text says otherwise the rate is "
               "48,000 Hz, the block 512 frames, and the *test material* noise at -12 dB and, where MIDI "
               "is taken, the notes 48, 60 and 67, which end after three fifths of the time.") +
           '\n' +
           Paragraph(
               "With `--blocks`, rendering.block-sizes, rendering.odd-blocks, rendering.bounds, "
               "rendering.writes-outputs and midi.block-edges go through the sizes that it names instead of "
               "those that are told here; with `--rates`, rendering.rates takes those from 44.1 to 192 kHz "
               "that sessions run at, and robustness.unusual-rates the others.");
}

std::string OnPage(const SCheck& inCheck)
{
    std::string text = fmt::format("### `{}`\n\n", inCheck.mName);
    text += Paragraph(fmt::format("From strictness {}: {}", inCheck.mStrictness, inCheck.mDescription));
    if (const SExplanation* const explanation = FindExplanation(inCheck.mName))
        text += Item(std::string("**Does:** ") + explanation->mDoes) +
                Item(std::string("**Matters:** ") + explanation->mMatters) +
                Item(std::string("**Mend:** ") + explanation->mMend);
    return text;
}
} // namespace

std::string ExplainedInWords(const SCheck& inCheck)
{
    constexpr std::size_t indent = 11;
    std::string text = fmt::format("{}, from strictness {}\n", inCheck.mName, inCheck.mStrictness);
    text += Wrapped("  ", inCheck.mDescription, 2);
    if (const SExplanation* const explanation = FindExplanation(inCheck.mName))
        text += Wrapped("  Does:    ", explanation->mDoes, indent) +
                Wrapped("  Matters: ", explanation->mMatters, indent) +
                Wrapped("  Mend:    ", explanation->mMend, indent);
    return text;
}

std::string ExplainedOnPage(std::span<const SCheck* const> inChecks)
{
    std::string page = Introduction();
    std::string_view group;
    for (const SCheck* const check : inChecks)
    {
        page += group == check->Group()
                    ? "\n"
                    : fmt::format("{}## {}\n\n", group.empty() ? "" : "\n", check->Group());
        group = check->Group();
        page += OnPage(*check);
    }
    return page;
}
