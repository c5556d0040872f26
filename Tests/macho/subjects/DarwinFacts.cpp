// What the loader's C library for images takes for granted, held against the system's own headers.
#include <cstddef>
#include <type_traits>

#include <_ctype.h>
#include <cerrno>
#include <dlfcn.h>
#include <pthread.h>
#include <runetype.h>

static_assert(sizeof(long) == 8 && sizeof(wchar_t) == 4);
#if defined(__x86_64__) // the only processor whose code the loader runs
static_assert(sizeof(long double) == 16);
#endif

static_assert(sizeof(pthread_mutex_t) == 64 && sizeof(pthread_mutexattr_t) == 16);
static_assert(sizeof(pthread_cond_t) == 48 && sizeof(pthread_once_t) == 16);
static_assert(std::is_same_v<pthread_key_t, unsigned long>);
static_assert(_PTHREAD_MUTEX_SIG_init == 0x32AAABA7);
static_assert(_PTHREAD_RECURSIVE_MUTEX_SIG_init == 0x32AAABA2);
static_assert(_PTHREAD_ERRORCHECK_MUTEX_SIG_init == 0x32AAABA1);
static_assert(_PTHREAD_COND_SIG_init == 0x3CB0B1BB && _PTHREAD_ONCE_SIG_init == 0x30B1BCBA);
static_assert(PTHREAD_MUTEX_NORMAL == 0 && PTHREAD_MUTEX_ERRORCHECK == 1 && PTHREAD_MUTEX_RECURSIVE == 2);
static_assert(EDEADLK == 11 && EAGAIN == 35 && ENOTSUP == 45 && ETIMEDOUT == 60 && ENOSYS == 78);

static_assert(offsetof(_RuneLocale, __runetype) == 60 && offsetof(_RuneLocale, __maplower) == 1084 &&
              offsetof(_RuneLocale, __mapupper) == 2108 && sizeof(_RuneLocale) <= 3132 + 128);
static_assert(_CTYPE_A == 0x100 && _CTYPE_C == 0x200 && _CTYPE_D == 0x400 && _CTYPE_G == 0x800);
static_assert(_CTYPE_L == 0x1000 && _CTYPE_P == 0x2000 && _CTYPE_S == 0x4000 && _CTYPE_U == 0x8000);
static_assert(_CTYPE_X == 0x10000 && _CTYPE_B == 0x20000 && _CTYPE_R == 0x40000);

static_assert(sizeof(Dl_info) == 32 && offsetof(Dl_info, dli_saddr) == 24);
