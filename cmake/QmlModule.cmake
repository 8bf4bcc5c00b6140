# A folder of C++ and QML as a static QML module.
#   tavero_qml_module(NAME URI Tavero.Something DEPENDENCIES ... SOURCES ... QML_FILES ...)
# The dependencies are the modules whose types the C++ of this one names.
# Whoever loads it links NAMEplugin and says Q_IMPORT_QML_PLUGIN(Tavero_SomethingPlugin).
function(tavero_qml_module name)
    cmake_parse_arguments(ARG "" "URI" "DEPENDENCIES;SOURCES;QML_FILES" ${ARGN})
    string(REPLACE "." "/" path ${ARG_URI})
    qt_add_library(${name} STATIC)
    qt_add_qml_module(${name}
        URI ${ARG_URI}
        VERSION 1.0
        RESOURCE_PREFIX /qt/qml
        OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/qml/${path}
        IMPORT_PATH ${PROJECT_BINARY_DIR}/qml
        DEPENDENCIES QtQuick ${ARG_DEPENDENCIES}
        SOURCES ${ARG_SOURCES}
        QML_FILES ${ARG_QML_FILES})
    # The generated type registrations include the headers by their bare names.
    target_include_directories(${name}
        PUBLIC ${PROJECT_SOURCE_DIR}/Tavero
        PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    tavero_warnings(${name})

    # What Qt generates is held to its own standards.
    get_target_property(sources ${name} SOURCES)
    list(FILTER sources INCLUDE REGEX "/\\.rcc/|_qmltyperegistrations\\.cpp$")
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
endfunction()
