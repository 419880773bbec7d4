# The system's headers are read once, not with each change: that is half of a compilation.
cmake_language(DEFER CALL target_precompile_headers kxmaths5 PRIVATE
    <math.h> <string.h> $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:<emmintrin.h$<ANGLE-R>>)
