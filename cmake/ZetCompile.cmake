# Compile options of the project's own code, carried by one interface target: `zet_compile`.
add_library(zet_compile INTERFACE)
target_compile_options(
  zet_compile INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
                        $<$<BOOL:${ZET_WERROR}>:-Werror> $<$<CONFIG:Release>:-O3>)
# What distributions ask of programs that read data from outside.
target_compile_options(zet_compile INTERFACE "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
target_compile_options(zet_compile INTERFACE $<$<CONFIG:Release>:-fstack-protector-strong>)
target_link_options(zet_compile INTERFACE -Wl,-z,relro,-z,now)
if(ZET_SANITIZE)
  target_compile_options(zet_compile INTERFACE -fsanitize=${ZET_SANITIZE} -fno-omit-frame-pointer
                                               -fno-sanitize-recover=all)
  target_link_options(zet_compile INTERFACE -fsanitize=${ZET_SANITIZE})
endif()
