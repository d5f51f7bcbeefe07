# Objective-C++ as the macOS port is written: the standard of the rest, automatic reference counting.
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
add_compile_options($<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
