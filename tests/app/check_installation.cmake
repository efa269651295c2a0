# Installs the build into an empty directory and checks that the desktop finds all it needs there.
# Called with -DBUILD_DIR=... -DPREFIX=...

file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX}
    OUTPUT_QUIET RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "cmake --install failed")
endif()

set(desktop_entry share/applications/example.kelmo.kelmo.desktop)
set(metainfo share/metainfo/example.kelmo.kelmo.metainfo.xml)
set(icon share/icons/hicolor/scalable/apps/example.kelmo.kelmo.svg)
foreach(file bin/kelmo ${desktop_entry} ${metainfo} ${icon} share/kelmo/protor.radii
        share/kelmo/ala-x-ala.asa share/kelmo/kyte-doolittle.hpb share/kelmo/aa_contacts.txt)
    if(NOT EXISTS ${PREFIX}/${file})
        message(FATAL_ERROR "${file} is not installed")
    endif()
endforeach()

# The entry and the metadata name each other, the program and the icon.
file(READ ${PREFIX}/${desktop_entry} entry)
file(READ ${PREFIX}/${metainfo} metadata)
foreach(expected "Exec=kelmo" "Icon=example.kelmo.kelmo" "Categories=Science;Biology;")
    if(NOT entry MATCHES "(^|\n)${expected}\n")
        message(FATAL_ERROR "The desktop entry lacks ${expected}")
    endif()
endforeach()
foreach(expected "<id>example.kelmo.kelmo</id>"
        "<launchable type=\"desktop-id\">example.kelmo.kelmo.desktop</launchable>")
    string(FIND "${metadata}" "${expected}" position)
    if(position EQUAL -1)
        message(FATAL_ERROR "The metadata lack ${expected}")
    endif()
endforeach()

# A stricter look where these programs are installed.
find_program(desktop_file_validate desktop-file-validate)
find_program(appstreamcli appstreamcli)
if(desktop_file_validate)
    execute_process(COMMAND ${desktop_file_validate} ${PREFIX}/${desktop_entry}
        COMMAND_ERROR_IS_FATAL ANY)
endif()
if(appstreamcli)
    execute_process(COMMAND ${appstreamcli} validate --no-net ${PREFIX}/${metainfo}
        COMMAND_ERROR_IS_FATAL ANY)
endif()
file(REMOVE_RECURSE ${PREFIX})
