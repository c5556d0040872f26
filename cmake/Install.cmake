# What `cmake --install` and `cpack` give: the package that find_package(AaxAdapter) finds, with the two programs; with
# AAXADAPTER_PRODUCT set, `cpack` packs that product's bundle instead.
include_guard(GLOBAL)
include(CMakePackageConfigHelpers)

# A target has the same name in the source tree and in an installed package.
set(libraries aax_exports aax_adapter aax_library aax_interface effect_gui_vst platform product_features render_guard vst2_host vst2_interface vst2_ports vstgui)
foreach(library IN LISTS libraries)
    add_library(AaxAdapter::${library} ALIAS ${library})
endforeach()

if(PROJECT_IS_TOP_LEVEL)
    set(package lib/cmake/AaxAdapter)
    install(TARGETS ${libraries} project_warnings EXPORT AaxAdapterTargets
        ARCHIVE DESTINATION lib/aaxadapter COMPONENT AaxAdapter)
    if(TARGET vst2probe)
        install(TARGETS vst2probe EXPORT AaxAdapterTargets RUNTIME DESTINATION bin COMPONENT AaxAdapter)
        install(DIRECTORY ${PROJECT_BINARY_DIR}/documents/vst2probe/ DESTINATION share COMPONENT AaxAdapter)
    endif()
    install(EXPORT AaxAdapterTargets NAMESPACE AaxAdapter:: DESTINATION ${package} COMPONENT AaxAdapter)
    write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/AaxAdapterConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES
            ${CMAKE_CURRENT_BINARY_DIR}/AaxAdapterConfigVersion.cmake
            ${CMAKE_CURRENT_LIST_DIR}/AaxAdapterConfig.cmake
            ${CMAKE_CURRENT_LIST_DIR}/AaxAdapter.cmake
            ${CMAKE_CURRENT_LIST_DIR}/Hardening.cmake
            ${CMAKE_CURRENT_LIST_DIR}/Info.plist.in
            ${CMAKE_CURRENT_LIST_DIR}/MacProcessors.cmake
            ${CMAKE_CURRENT_LIST_DIR}/Notices.cmake
            ${CMAKE_CURRENT_LIST_DIR}/PlaceSourceVst.cmake
            ${CMAKE_CURRENT_LIST_DIR}/ProductArguments.cmake
            ${CMAKE_CURRENT_LIST_DIR}/ProductConstants.cmake
            ${CMAKE_CURRENT_LIST_DIR}/ProductFeatures.cmake
            ${CMAKE_CURRENT_LIST_DIR}/ProductOptions.cmake
            ${CMAKE_CURRENT_LIST_DIR}/Rounding.cmake
            ${CMAKE_CURRENT_LIST_DIR}/entry_points.exports
            ${CMAKE_CURRENT_LIST_DIR}/entry_points.map
            ${CMAKE_CURRENT_LIST_DIR}/product.cpp.in
        DESTINATION ${package} COMPONENT AaxAdapter)
    install(DIRECTORY ${CMAKE_CURRENT_LIST_DIR}/notices DESTINATION ${package} COMPONENT AaxAdapter)
    install(FILES Source/AaxAdapter_Product.h DESTINATION include/aaxadapter/Source COMPONENT AaxAdapter)
    install(FILES
            ${PROJECT_BINARY_DIR}/options/Source/plugins/ProductFeatures.h
            ${PROJECT_BINARY_DIR}/options/Source/plugins/ProductOptions.h
        DESTINATION include/aaxadapter/Source/plugins COMPONENT AaxAdapter)
    # What a maker needs, and so all that has to be built before the package is installed.
    add_custom_target(aaxadapter_package DEPENDS ${libraries})
    if(TARGET aaxhost)
        install(TARGETS aaxhost EXPORT AaxAdapterTargets RUNTIME DESTINATION bin COMPONENT AaxAdapter)
        install(DIRECTORY ${PROJECT_BINARY_DIR}/documents/aaxhost/ DESTINATION share COMPONENT AaxAdapter)
        install(DIRECTORY ${CMAKE_BINARY_DIR}/share/aaxadapter/survey DESTINATION share/aaxadapter COMPONENT AaxAdapter
            USE_SOURCE_PERMISSIONS)
        add_dependencies(aaxadapter_package aaxhost vst2probe SurveyModule)
    endif()
    # What is in the libraries and the two programs; the programs' other libraries are shared ones of the system, or free
    # to be built into a binary without a notice.
    get_property(notices TARGET vstgui PROPERTY AAXADAPTER_NOTICE)
    aaxadapter_write_notices(${CMAKE_CURRENT_BINARY_DIR}/ThirdPartyNotices.txt CLI11 nlohmann-json ${notices})
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ThirdPartyNotices.txt DESTINATION share/doc/aaxadapter COMPONENT AaxAdapter)
    install(DIRECTORY docs DESTINATION share/doc/aaxadapter COMPONENT AaxAdapter PATTERN make-pictures EXCLUDE)
    install(FILES CHANGELOG.md CONTRIBUTING.md README.md DESTINATION share/doc/aaxadapter COMPONENT AaxAdapter)

    set(CPACK_GENERATOR TGZ)
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
    if(AAXADAPTER_PRODUCT)
        set(CPACK_PACKAGE_NAME ${AAXADAPTER_PRODUCT})
        set(CPACK_PACKAGE_VERSION ${AAXADAPTER_VERSION})
        set(CPACK_COMPONENTS_ALL ${AAXADAPTER_PRODUCT})
    else()
        set(CPACK_COMPONENTS_ALL AaxAdapter)
        set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
    endif()
    include(CPack)
endif()
