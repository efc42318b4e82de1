# A fault in memory ends the program instead of handing it over to whoever caused the fault. packaging/inspect and
# packaging/windows/inspect look into the finished programs for each of these. A sanitizer finds more, and finds it
# first: builds for the debugger and for sanitizers go without.
set(HARDENED $<CONFIG:Release>)
add_compile_options($<${HARDENED}:-fstack-protector-strong> $<${HARDENED}:-U_FORTIFY_SOURCE>
                    $<${HARDENED}:-D_FORTIFY_SOURCE=3>)
if(WIN32)
    # The option makes the linker add the library of the check. Exceptions of C++ need no handlers of Windows here, so
    # that nobody can bring one in.
    add_link_options($<${HARDENED}:-fstack-protector-strong>)
    add_link_options(-Wl,--nxcompat,--dynamicbase,--no-seh,--tsaware)
else()
    add_compile_options(-fPIE $<${HARDENED}:-fstack-clash-protection>)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|i.86")
        add_compile_options($<${HARDENED}:-fcf-protection>)
    endif()
    add_link_options(-pie -Wl,-z,relro,-z,now,-z,noexecstack)
endif()
