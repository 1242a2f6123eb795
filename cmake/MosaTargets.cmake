# The one place for compile flags, and the helpers that keep the folders' targets alike.

add_library(mosa_flags INTERFACE)
target_compile_options(mosa_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion)
target_compile_definitions(mosa_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
    QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(MOSA_SANITIZE)
    # The check of objects' types asks through pipes which memory it may read, and gives wrong answers while a test
    # makes system calls fail.
    target_compile_options(mosa_flags INTERFACE -fsanitize=address,undefined -fno-sanitize=vptr
        -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(mosa_flags INTERFACE -fsanitize=address,undefined)
    target_sources(mosa_flags INTERFACE ${CMAKE_CURRENT_LIST_DIR}/KeepLibrariesLoaded.cpp)
elseif(MOSA_THREAD_SANITIZE)
    target_compile_options(mosa_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(mosa_flags INTERFACE -fsanitize=thread)
endif()

# mosa_library(model SOURCES … LINK_PUBLIC … LINK_PRIVATE …) makes the library of one folder of src.
# Its headers are reached by their bare names, and only by targets that link it: an include against the
# direction of the layers does not compile.
function(mosa_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK_PUBLIC;LINK_PRIVATE" ${ARGN})
    add_library(mosa_${name} STATIC ${arg_SOURCES})
    target_include_directories(mosa_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(mosa_${name} PUBLIC ${arg_LINK_PUBLIC} PRIVATE mosa_flags ${arg_LINK_PRIVATE})
endfunction()

# mosa_qml_module(state URI Mosa.State …) is the same for a folder whose types QML sees. DEPENDENCIES are the QML modules
# that its C++ types build on.
function(mosa_qml_module name)
    cmake_parse_arguments(arg "" "URI" "SOURCES;QML;RESOURCES;DEPENDENCIES;LINK_PUBLIC;LINK_PRIVATE" ${ARGN})
    qt_add_library(mosa_${name} STATIC)
    string(REPLACE "." "/" uri_path ${arg_URI})
    # Compiled QML starts faster, but takes longer to build than all the C++ of the views together.
    set(cachegen)
    if(CMAKE_BUILD_TYPE STREQUAL "Debug")
        set(cachegen NO_CACHEGEN)
    endif()
    qt_add_qml_module(mosa_${name}
        URI ${arg_URI}
        VERSION 1.0
        RESOURCE_PREFIX /qt/qml
        OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml/${uri_path}
        ${cachegen}
        DEPENDENCIES ${arg_DEPENDENCIES}
        SOURCES ${arg_SOURCES}
        QML_FILES ${arg_QML}
        RESOURCES ${arg_RESOURCES})
    # What the QML compiler writes is not ours to keep free of warnings.
    foreach(file IN LISTS arg_QML)
        string(REGEX REPLACE "[^A-Za-z0-9]" "_" unit ${file})
        set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/.rcc/qmlcache/mosa_${name}_${unit}.cpp
            PROPERTIES COMPILE_OPTIONS -w)
    endforeach()
    target_include_directories(mosa_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(mosa_${name} PUBLIC ${arg_LINK_PUBLIC} PRIVATE mosa_flags ${arg_LINK_PRIVATE})
endfunction()
