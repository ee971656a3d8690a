# Compiler settings shared by every target of the project.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

# Same input, same bits: no contraction into fused multiply-add (its use depends on the target), no fast-math.
add_compile_options(-ffp-contract=off -Wall -Wextra -Wpedantic -Werror)

# Nobody reads errno after sqrt or asks for floating-point exceptions; values are the same without both.
add_compile_options(-fno-math-errno -fno-trapping-math)

# Nobody replaces the library's functions at load time, so calls among them may be direct and inlined.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fno-semantic-interposition PZ_HAS_NO_INTERPOSITION)
if(PZ_HAS_NO_INTERPOSITION)
    add_compile_options(-fno-semantic-interposition)
endif()

# Functions of one room run in the loops of another, and the linker can still inline them: a boolean takes 1 to 9 % less
# time. Only where speed is what a build is for: linking takes a minute.
include(CheckIPOSupported)
check_ipo_supported(RESULT PZ_HAS_IPO OUTPUT PZ_IPO_OUTPUT LANGUAGES CXX)
if(PZ_HAS_IPO AND NOT DEFINED CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE)
    set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
endif()

# -DPZ_SANITIZE=ON: every finding ends the program. "undefined" contains neither float check: float-cast-overflow is
# added, float-divide-by-zero stays off since several formulas divide by zero on purpose.
option(PZ_SANITIZE "Build with AddressSanitizer, UndefinedBehaviorSanitizer and LeakSanitizer" OFF)
if(PZ_SANITIZE)
    add_compile_options(-fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined,float-cast-overflow)
endif()
