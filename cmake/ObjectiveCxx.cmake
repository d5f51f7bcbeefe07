# Objective-C++ for the macOS port: the same C++ standard, and automatic reference counting.
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
add_compile_options($<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>)
