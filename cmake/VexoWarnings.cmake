# Warnings are errors in everything we write.
add_library(vexo_warnings INTERFACE)
target_compile_options(vexo_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow -Wvla
                                               -Wnon-virtual-dtor -Werror)
