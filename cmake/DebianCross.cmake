# Toolchain file for Debian's cross compilers, with the programs run by qemu-user:
#   cmake -DCMAKE_TOOLCHAIN_FILE=cmake/DebianCross.cmake -DCORVIS_TRIPLET=arm-linux-gnueabihf -DCORVIS_BUILD_DESKTOP=OFF
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CORVIS_TRIPLET)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR "${CORVIS_TRIPLET}")
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${CORVIS_TRIPLET}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR} -L /usr/${CORVIS_TRIPLET})
# Not a warning: a note at each vector that compilers older than GCC 7 pass differently.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
