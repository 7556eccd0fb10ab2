# What the libraries export: TAGWRIGHT_SYMBOLS_COMMAND compares it with packaging/debian/symbols.in, which
# scripts/update-symbols renews, fails where they differ, and writes the symbols file of the package. Empty where that
# can't be done: sanitizers, fuzzers and other compilers put symbols of their own into the libraries, and a host's own
# libraries are its own concern.

find_program(TAGWRIGHT_GENSYMBOLS dpkg-gensymbols)
set(TAGWRIGHT_SYMBOLS_COMMAND "")
if(TAGWRIGHT_GENSYMBOLS AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU"
   AND NOT (TAGWRIGHT_SANITIZE OR TAGWRIGHT_BUILD_FUZZERS OR TAGWRIGHT_HOST_TARGET))
  configure_file(${PROJECT_SOURCE_DIR}/packaging/debian/symbols.in ${PROJECT_BINARY_DIR}/symbols.list @ONLY)
  set(TAGWRIGHT_SYMBOLS_COMMAND
      ${TAGWRIGHT_GENSYMBOLS} -c4 -p${TAGWRIGHT_DEB_LIBRARY} -v${PROJECT_VERSION}-1 -I${PROJECT_BINARY_DIR}/symbols.list
      -e$<TARGET_FILE:tagwright> -e$<TARGET_FILE:tagwright_host> -O${PROJECT_BINARY_DIR}/symbols)
endif()
