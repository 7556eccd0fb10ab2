# What all of this project's own targets have in common.

find_program(TAGWRIGHT_CCACHE ccache)
if(TAGWRIGHT_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${TAGWRIGHT_CCACHE}")
endif()

# Sanitizers must be in every object of a program, or their reports can't be trusted.
if(TAGWRIGHT_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
elseif(TAGWRIGHT_BUILD_FUZZERS)
  add_compile_options(-fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# Language level, warnings and Qt's strict macros for one of our own targets.
function(tagwright_target_defaults target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF AUTOMOC ON AUTOUIC ON AUTORCC ON)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
                                           $<$<BOOL:${TAGWRIGHT_WARNINGS_AS_ERRORS}>:-Werror>)
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                                               QT_NO_FOREACH
                                               # Qt 5.15 marks all of its SAX classes deprecated.
                                               QT_NO_DEPRECATED_WARNINGS)
endfunction()
