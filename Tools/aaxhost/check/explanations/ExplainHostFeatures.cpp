#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> HostFeatureExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"features.parameter-sync",
         "Sets each parameter to 0.75 or 0.25, reads it back within 0.00001, moves it twice by 0.0625 "
         "relatively, and looks whether it is 0.125 higher.",
         "With PARAMETER_SYNC, endless knobs on a surface go on from where the parameter is.",
         "The module tells what the host set until the plug-in says otherwise: a plug-in that calls "
         "audioMasterAutomate inside setParameter, with a rounded value, changes it. Report only what the "
         "musician moves in the editor."},
        {"features.value-texts",
         "Compares each parameter's text with what the plug-in called directly writes in effGetParamDisplay, "
         "with a blank and effGetParamLabel. Texts that are empty, not plain ASCII, or with blanks at the "
         "ends or two in a row are left out.",
         "With VALUE_TEXTS, a knob reads 160 ms and not 0.02.",
         "Let the text depend on the value only, not on an editor that is open, and write it for the value "
         "that getParameter tells at that moment. A text that changes by itself cannot be compared."},
        {"features.parameter-properties",
         "Compares each parameter's steps with effGetParameterProperties of the plug-in called directly, and "
         "whether it can be automated with effCanBeAutomated, unless the plug-in denies that of all.",
         "With PARAMETER_PROPERTIES, a switch is a switch and a list clicks from entry to entry.",
         "Answer 1 from effGetParameterProperties and set the flags: kVstParameterIsSwitch for two steps, "
         "kVstParameterUsesIntegerMinMax with minInteger and maxInteger for more. Both answers have to be "
         "the same before and after effOpen."},
        {"features.gestures",
         "Opens the editor, sets every parameter to 0.4 as a knob of the host does, closes the editor, wakes "
         "the timer three times, and looks whether the host takes a parameter for held. Skipped where the "
         "plug-in begins no edit by itself.",
         "With GESTURES, latching automation takes a whole drag and lets go at its end.",
         "The module ends what is open when the editor closes. Where one is still held, the plug-in began an "
         "edit after effEditClose, or of an index that it has not got: end edits in effEditClose, and begin "
         "none outside of the editor."},
        {"features.programs",
         "Looks whether the last parameter is \"Program\" with a step for each program, compares up to 128 "
         "names with effGetProgramNameIndexed, and plays a second with another program: sound and chunk have "
         "to be as of the plug-in called directly.",
         "With PROGRAMS, the plug-in's presets can be chosen, automated and saved in the host.",
         "numPrograms must not change after the entry function. Answer effGetProgramNameIndexed for every "
         "index without choosing that program, and do all of effSetProgram before it returns, not in a "
         "thread."},
        {"features.bypass",
         "Switches master bypass on after half a second. Where effCanDo answers 1 for bypass, the module has "
         "to sound as the plug-in called directly with effSetBypass; otherwise its main outputs have to be "
         "the input, as late as the latency, sample for sample, and the others silent.",
         "With BYPASS, the host's button compares wet and dry without a jump in time.",
         "A plug-in that answers effCanDo with 1 for bypass has to do it in effSetBypass: pass the input on "
         "with its latency, and play on when it is switched off. If it cannot, answer 0 and leave it to the "
         "module."},
        {"features.output-names",
         "Looks whether each auxiliary output has a name, and whether it is the label of "
         "effGetOutputProperties where the plug-in has a plain one.",
         "With OUTPUT_NAMES, a drum machine's outputs read Kick and Snare in the host's routing.",
         "Write the label in effGetOutputProperties, at most 63 characters and a zero, for the first pin of "
         "each pair, and before effOpen: hosts learn the names at the scan."},
    };
    return kTexts;
}
