# Icon, version and manifest of the program, and how it starts.
enable_language(RC)
find_program(ICOTOOL icotool REQUIRED)
set(KIVORA_ICON ${CMAKE_CURRENT_BINARY_DIR}/kivora.ico)
# The largest one stays packed; sizes beyond these the system makes of it.
set(KIVORA_PICTURES 16 24 32 48 64)
list(TRANSFORM KIVORA_PICTURES REPLACE "(.+)" "${CMAKE_BINARY_DIR}/res/kivora-\\1.png")
add_custom_command(
    OUTPUT ${KIVORA_ICON}
    COMMAND ${ICOTOOL} -c -o ${KIVORA_ICON} ${KIVORA_PICTURES} -r ${CMAKE_BINARY_DIR}/res/kivora-256.png
    DEPENDS pictures
    VERBATIM)
configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/kivora.rc.in ${CMAKE_CURRENT_BINARY_DIR}/kivora.rc @ONLY)
set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/kivora.rc PROPERTIES OBJECT_DEPENDS ${KIVORA_ICON})
add_library(program_resources OBJECT ${CMAKE_CURRENT_BINARY_DIR}/kivora.rc ${KIVORA_ICON})
target_link_libraries(kivora PRIVATE program_resources ws2_32 winspool comdlg32 shell32)
set_target_properties(kivora PROPERTIES WIN32_EXECUTABLE ON)
set_target_properties(kivora PROPERTIES RULE_LAUNCH_LINK ${CMAKE_SOURCE_DIR}/packaging/windows/link
                                        LINK_DEPENDS ${CMAKE_SOURCE_DIR}/packaging/windows/link)
# The system treats a program by the version that it asks for.
target_link_options(kivora PRIVATE -s -Wl,--major-os-version,6,--minor-os-version,1
                    -Wl,--major-subsystem-version,6,--minor-subsystem-version,1)
