# velkin_options: what every target of our own code is compiled with. Libraries' headers are not held to it.
add_library(velkin_options INTERFACE)
target_compile_options(velkin_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual $<$<BOOL:${VELKIN_WERROR}>:-Werror>
  # Designated initialisers leave fields out on purpose.
  -Wno-missing-field-initializers
  # g++ 12 sees uninitialised members and overlapping copies that are not there.
  "$<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized;-Wno-restrict>")

if(VELKIN_SANITIZE)
  # The web engine's libraries carry no type information, and call functions of the standard library's templates that
  # stand in our program too: a look at the types of their objects would end it.
  add_compile_options(-fsanitize=${VELKIN_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${VELKIN_SANITIZE})
  # What the sanitizers put between the lines makes g++ 12 see accesses out of bounds that are not there.
  target_compile_options(velkin_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds>
                         $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>)
endif()

# The fuzzers steer by the coverage of all of our code, so the libraries are instrumented too.
if(VELKIN_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
