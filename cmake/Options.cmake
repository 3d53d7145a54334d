# velkin_options: what every target of our own code is compiled with. Libraries' headers are not held to it.
add_library(velkin_options INTERFACE)
target_compile_options(velkin_options INTERFACE
  -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual $<$<BOOL:${VELKIN_WERROR}>:-Werror>
  # Among files that are compiled together, a name of one doesn't hide that of another.
  $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wshadow>
  # Designated initialisers leave fields out on purpose.
  -Wno-missing-field-initializers
  # g++ 12 sees uninitialised members, overlapping copies and accesses out of bounds that are not there.
  "$<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized;-Wno-restrict;-Wno-array-bounds;-Wno-stringop-overflow>")

if(VELKIN_SANITIZE)
  # The web engine's libraries carry no type information, and call functions of the standard library's templates that
  # stand in our program too: a look at the types of their objects would end it.
  add_compile_options(-fsanitize=${VELKIN_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${VELKIN_SANITIZE})
endif()

# The fuzzers steer by the coverage of all of our code, so the libraries are instrumented too.
if(VELKIN_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# velkin_unite(TARGET COUNT): compiles the files of a folder together, COUNT at a time, which takes a fourth of the time.
# So no file has a name of a neighbour's for another thing: tools/check-united sees to it, whichever files meet. clang-tidy
# and the like want each file by itself: CMAKE_DISABLE_PRECOMPILE_HEADERS is their sign.
function(velkin_unite target count)
  if(CMAKE_DISABLE_PRECOMPILE_HEADERS)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  list(SORT sources)
  set(folder "")
  foreach(source IN LISTS sources)
    file(RELATIVE_PATH here ${PROJECT_SOURCE_DIR} ${source})
    get_filename_component(here ${here} DIRECTORY)
    if(NOT here STREQUAL folder)
      set(folder ${here})
      set(number 0)
    endif()
    math(EXPR part "${number} / ${count}")
    math(EXPR number "${number} + 1")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${folder}/${part})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
