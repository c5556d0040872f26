#include "Tools/macho_loader/LibSystemParts.h"

#include <sstream>
#include <utility>

#include <dlfcn.h>

namespace
{
constexpr const char* kSameNames =
    // memory and bytes
    "malloc calloc realloc free posix_memalign aligned_alloc memcpy memmove memset memchr memcmp bcmp bzero "
    "__memcpy_chk __memmove_chk __memset_chk __strcpy_chk __strncpy_chk __strcat_chk __strncat_chk "
    "__snprintf_chk __vsnprintf_chk __sprintf_chk __vsprintf_chk "
    // text
    "strlen strnlen strcmp strncmp strcpy strncpy strcat strncat strchr strrchr strstr strdup strcasecmp "
    "strncasecmp strtol strtoul strtoll strtoull strtod strtof strtold atoi atol atof wcslen wmemcpy "
    "wmemmove "
    "wmemset wmemchr wmemcmp wcscmp swprintf wcstol wcstoul wcstoll wcstoull wcstod wcstof wcstold isalpha "
    "isdigit isalnum isspace isupper islower isprint ispunct isxdigit toupper tolower qsort bsearch abs labs "
    // files: the contents of FILE are nobody's business
    "snprintf vsnprintf sprintf vsprintf printf fprintf vfprintf puts fputs fputc putc putchar fwrite fread "
    "fopen fclose fflush fgets fgetc getc ungetc feof ferror fseek ftell fseeko ftello rewind remove rename "
    "sscanf vsscanf fscanf asprintf vasprintf catopen catclose catgets "
    // mathematics: the last digit may be another one than on a Mac
    "acos asin atan atan2 cos sin tan cosh sinh tanh exp exp2 expm1 log log2 log10 log1p pow sqrt cbrt hypot "
    "fmod fabs ceil floor round trunc rint nearbyint lround lrint llround llrint ldexp frexp modf copysign "
    "remainder fmax fmin fma scalbn ilogb logb acosf asinf atanf atan2f cosf sinf tanf coshf sinhf tanhf "
    "expf "
    "exp2f expm1f logf log2f log10f log1pf powf sqrtf cbrtf hypotf fmodf ceilf floorf roundf truncf rintf "
    "nearbyintf lroundf lrintf ldexpf frexpf modff copysignf fmaxf fminf fmaf scalbnf "
    // process and time
    "abort exit _exit getenv time gmtime gmtime_r localtime localtime_r mktime difftime strftime usleep "
    "nanosleep getpid access unlink sched_yield pthread_self pthread_join pthread_detach rand srand "
    "arc4random "
    // locales: those that differ are functions of their own
    "freelocale uselocale localeconv "
    // exceptions: records and callbacks are the same in every system's C++
    "_Unwind_RaiseException _Unwind_Resume _Unwind_Resume_or_Rethrow _Unwind_DeleteException _Unwind_GetIP "
    "_Unwind_GetIPInfo _Unwind_SetIP _Unwind_GetGR _Unwind_SetGR _Unwind_GetLanguageSpecificData "
    "_Unwind_GetRegionStart _Unwind_GetCFA _Unwind_Backtrace _Unwind_FindEnclosingFunction ";

/** The name there and the name here. */
constexpr std::pair<const char*, const char*> kOtherNames[] = {
    {"__bzero", "bzero"},
    {"__error", "__errno_location"},
    {"malloc_size", "malloc_usable_size"},
    {"strerror_r", "__xpg_strerror_r"},
};
} // namespace

SymbolTable SameSymbols()
{
    SymbolTable symbols;
    std::istringstream names(kSameNames);
    for (std::string name; names >> name;)
        symbols[name] = dlsym(RTLD_DEFAULT, name.c_str());
    for (const auto& [there, here] : kOtherNames)
        symbols[there] = dlsym(RTLD_DEFAULT, here);
    return symbols;
}
