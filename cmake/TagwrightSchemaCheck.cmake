# tagwright_check_schema(FILE-OR-FOLDER ... [WARN] [VALID_OUTPUT] [DISABLE RULE ...])
#
# Has each build check these schemas, and what they include, with tagwright-schema. What is found fails the build, or
# with WARN is only told. VALID_OUTPUT leaves out the traps that valid output cures, DISABLE the named rules.
function(tagwright_check_schema)
  cmake_parse_arguments(PARSE_ARGV 0 arg "WARN;VALID_OUTPUT" "" "DISABLE")
  if(NOT TARGET Tagwright::SchemaCheck)
    message(FATAL_ERROR "tagwright_check_schema: this Tagwright was built without tagwright-schema")
  endif()
  set(options $<$<BOOL:${arg_WARN}>:--only-warn> $<$<BOOL:${arg_VALID_OUTPUT}>:--valid-output>)
  foreach(rule IN LISTS arg_DISABLE)
    list(APPEND options --disable ${rule})
  endforeach()
  list(TRANSFORM arg_UNPARSED_ARGUMENTS REPLACE "^([^/].*)$" "${CMAKE_CURRENT_SOURCE_DIR}/\\1")
  list(JOIN ARGN " " schemas)
  # Always run: only the checker knows what a schema includes.
  string(MD5 name "${CMAKE_CURRENT_SOURCE_DIR};${ARGN}")
  add_custom_target(tagwright_check_schema_${name} ALL
    COMMAND Tagwright::SchemaCheck check ${options} ${arg_UNPARSED_ARGUMENTS}
    COMMENT "Checking schemas: ${schemas}" VERBATIM COMMAND_EXPAND_LISTS)
endfunction()
