# find_package(kxmaths5 5 CONFIG [COMPONENTS shared|static]): the target kxmaths5::kxmaths5. Without a
# component it is the shared library where that is installed, and the static one where it is not.
set(kxmaths5_kind ${kxmaths5_FIND_COMPONENTS})
if(NOT kxmaths5_kind)
    set(kxmaths5_kind static)
    if(EXISTS "${CMAKE_CURRENT_LIST_DIR}/kxmaths5-shared-targets.cmake")
        set(kxmaths5_kind shared)
    endif()
endif()

if(kxmaths5_kind MATCHES "^(shared|static)$"
        AND EXISTS "${CMAKE_CURRENT_LIST_DIR}/kxmaths5-${kxmaths5_kind}-targets.cmake")
    include(${CMAKE_CURRENT_LIST_DIR}/kxmaths5-${kxmaths5_kind}-targets.cmake)
    set(kxmaths5_${kxmaths5_kind}_FOUND TRUE)
else()
    set(kxmaths5_FOUND FALSE)
    set(kxmaths5_NOT_FOUND_MESSAGE "There is no ${kxmaths5_kind} library of kxmaths5 here.")
endif()
unset(kxmaths5_kind)
