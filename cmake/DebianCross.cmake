# Toolchain file for Debian's cross compilers. The programs run under qemu-user:
#   cmake -DCMAKE_TOOLCHAIN_FILE=cmake/DebianCross.cmake -DCORVIS_TRIPLET=arm-linux-gnueabihf -DCORVIS_BUILD_DESKTOP=OFF
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CORVIS_TRIPLET)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR "${CORVIS_TRIPLET}")
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${CORVIS_TRIPLET}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR} -L /usr/${CORVIS_TRIPLET})
# Silences notes about an ABI change in GCC 7, which appear at every std::vector argument.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
