// The settings of the C++ library that is linked into every cross-built module.
#ifndef _LIBCPP___CONFIG_SITE
#define _LIBCPP___CONFIG_SITE
#define _LIBCPP_ABI_VERSION 1
#define _LIBCPP_ABI_NAMESPACE __1
// It is linked in, so no function of it has to wait for a release of the system.
#define _LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS
// Then -fvisibility=hidden hides std:: too, which must not mix with the C++ library of the host's process.
#define _LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS
#define _LIBCXXABI_DISABLE_VISIBILITY_ANNOTATIONS
#endif
