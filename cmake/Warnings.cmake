# Flags for our own code. Linked by every target of ours and by nothing that we only install.
add_library(brimvale_warnings INTERFACE)
target_compile_options(
    brimvale_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wshadow
              -Wnon-virtual-dtor
              # Unnamed namespaces in included files, which joined sources are.
              -Wno-subobject-linkage
              # One rounding per written operation: both platforms then render the same samples.
              -ffp-contract=off)
