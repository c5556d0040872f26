# find_package(AaxAdapter) gives add_aax_adapter() and the libraries that its products are linked of.
include(${CMAKE_CURRENT_LIST_DIR}/AaxAdapterTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/AaxAdapter.cmake)
