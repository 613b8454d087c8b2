# Defines the targets that src/ links for a real platform: nurvo_headers, nurvo_common and nurvo_platform.
add_library(nurvo_headers INTERFACE)
target_include_directories(nurvo_headers SYSTEM INTERFACE ${CORVIS_PLATFORM}/include)

find_library(NURVO_COMMON_LIBRARY nurvo_common PATHS ${CORVIS_PLATFORM}/lib NO_DEFAULT_PATH REQUIRED)
add_library(nurvo_common INTERFACE)
target_link_libraries(nurvo_common INTERFACE nurvo_headers ${NURVO_COMMON_LIBRARY})

# The C interfaces are in the platform's other libraries, however many there are.
file(GLOB platform_libraries ${CORVIS_PLATFORM}/lib/*.so)
list(REMOVE_ITEM platform_libraries ${NURVO_COMMON_LIBRARY})
add_library(nurvo_platform INTERFACE)
target_link_libraries(nurvo_platform INTERFACE nurvo_headers ${platform_libraries})
