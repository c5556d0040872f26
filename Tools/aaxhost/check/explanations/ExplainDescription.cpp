#include "Tools/aaxhost/check/Explanation.h"

std::span<const SExplanation> DescriptionExplanations()
{
    static constexpr SExplanation kTexts[] = {
        {"description.opens", "Loads the module, which loads the plug-in once, and asks for what it offers.",
         "A host does this when it scans. A module that fails here is in no menu, and hosts often remember "
         "it as bad until it is installed again.",
         "The sentence names the step. Most often the plug-in did not load: its file is missing in the "
         "bundle or for another processor, a library that it needs is not installed, or its entry function "
         "wants the host's version (option ENTRY_VERSION 2400). vst2probe says which. effOpen comes later "
         "and is not at fault."},
        {"description.identity",
         "Looks at the effect's identifier, which has to be printable ASCII without blanks, and at the "
         "manufacturer, product and plug-in codes, none of which may be 0.",
         "Sessions and automation find the plug-in by these. With a code of 0 a saved song opens with a "
         "missing plug-in.",
         "Set EFFECT_ID and MANUFACTURER_ID of the product. The other two codes come from the plug-in's "
         "uniqueID in its AEffect: give it one of four characters of your own, and never change it after a "
         "release."},
        {"description.names",
         "Looks whether effect and package have a name; a manufacturer without one is a warning.",
         "The musician finds the plug-in in a menu by its name and, in many hosts, below its maker.",
         "Answer effGetVendorString, and effGetEffectName, with a text that ends in a zero, before effOpen: "
         "the description asks a plug-in that is not open yet. One without an effect name gets a stand-in "
         "from the module, which passes here and looks odd in a menu."},
        {"description.category", "Looks whether the effect is in at least one category.",
         "Hosts sort their menus by category; one without any may be listed nowhere.",
         "The module says instrument where the plug-in has effFlagsIsSynth among its flags, and effect "
         "otherwise. Name another category with the product option CATEGORY."},
        {"description.stems",
         "Looks whether the main output has a stem format with channels, and every auxiliary output too.",
         "The host makes its buffers by these. Without an output stem it has nowhere to play the plug-in.",
         "The stems follow from the pins that the plug-in describes in effGetInputProperties and "
         "effGetOutputProperties. If it answers neither, build with PORTS_FROM_COUNTS; set numOutputs before "
         "the entry function returns."},
        {"description.fields",
         "Looks whether the record of a render call has fields for audio outputs and for the number of "
         "frames, and none twice.",
         "The host fills this record before each block. A missing or doubled field ends in silence or a "
         "crash of the host.",
         "The module makes the record and the plug-in has no say in it: build the product again with an "
         "unchanged package."},
        {"description.procedures",
         "Looks whether the module registers its render procedure and the factories of the effect parameters "
         "and of the editor; no factory of editors is a warning.",
         "Without the first two the host can make no instance; without the third it shows plain sliders.",
         "They are the module's own, also for a plug-in without an editor. A failure points to a product "
         "that was linked without the adapter's library."},
        {"description.stable",
         "Opens the module, closes it, opens it again, and compares identifier, names, fields, stems and "
         "properties.",
         "Hosts keep the first description in a cache. If the next one differs, they render with channels "
         "that are not there, or list the plug-in twice.",
         "Make names, numInputs, numOutputs, pins and the answers to effCanDo depend on nothing that "
         "changes: not on a licence file, the time, a static counter or an earlier instance in the same "
         "process."},
        {"description.nothing-left",
         "Counts the module's objects before there is an instance, and the host's objects that a closed "
         "module still holds; both have to be 0.",
         "What is left behind after a scan keeps the module in memory and may crash the host when it quits.",
         "The objects are the module's and the plug-in never sees them. If the checks above pass, tell the "
         "maker of the adapter, with the plug-in and the options of the product."},
    };
    return kTexts;
}
