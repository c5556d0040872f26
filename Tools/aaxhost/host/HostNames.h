#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Interfaces/ACF/ACFTypes.h"

#include <string>
#include <string_view>

enum class EAnswers;
struct SMainStems;

/** Readable forms of the interfaces' numbers, for the log and for messages. */

/** The published name, or the 36-character form of an identifier that has none here. */
std::string NameOfUid(const acfUID& inId);
/** "-20004 (a needed object or interface is missing)". */
std::string NameOfResult(AAX_Result inResult);
/** "stereo", "none" or the number and channel count of another format. */
std::string NameOfStemFormat(std::int32_t inFormat);
/** "mono", "mono-stereo", "stereo"; others by both formats, with a hyphen. */
std::string NameOfStems(const SMainStems& inStems);
/** The four characters in quotes, or a hexadecimal number when they are not printable. */
std::string NameOfFourCharCode(AAX_CTypeID inCode);
std::string NameOfMidiNodeType(std::int32_t inType);
/** "manufacturer id" and so on; empty for a property without a name here. */
std::string_view NameOfProperty(AAX_EProperty inProperty);
/** "at-once", "late", "last": as on the command line. */
const char* NameOfAnswers(EAnswers inAnswers) noexcept;
/** In quotes with unprintable bytes escaped; null stands for a null pointer. */
std::string Quoted(const char* inText);
