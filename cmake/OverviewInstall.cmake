# SPDX-License-Identifier: MIT
# What "cmake --install" and the packages hold. The programs find what they load by paths relative to themselves, so
# lib/draxel mirrors the build's bin folder, and bin holds links that point there. The folders are fixed names, not
# GNUInstallDirs: the links and the paths in the man pages depend on them.

set(program_permissions
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(file_permissions OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

set(packaging_dir "${PROJECT_SOURCE_DIR}/packaging")
set(made_dir "${PROJECT_BINARY_DIR}/packaging") # what is made for the installation only

# Before anything else is installed: CMake's own folders have the permissions that the umask leaves.
install(SCRIPT "${CMAKE_CURRENT_LIST_DIR}/OverviewInstallFolders.cmake")

# --- Programs, modules and their data

set_target_properties(draxel draxelctl pl_overview simulatedcanbus tracecanbus PROPERTIES INSTALL_RPATH "")
install(TARGETS draxel draxelctl
    RUNTIME DESTINATION lib/draxel PERMISSIONS ${program_permissions})
install(TARGETS pl_overview
    LIBRARY DESTINATION lib/draxel/plugins PERMISSIONS ${file_permissions})
install(TARGETS simulatedcanbus tracecanbus
    LIBRARY DESTINATION lib/draxel/canbus PERMISSIONS ${file_permissions})
install(DIRECTORY "${OVERVIEW_BIN_DIR}/languages/"
    DESTINATION lib/draxel/languages
    FILE_PERMISSIONS ${file_permissions} DIRECTORY_PERMISSIONS ${program_permissions}
    FILES_MATCHING PATTERN "*.qm")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/simulator/vehicles/"
    DESTINATION lib/draxel/vehicles
    FILE_PERMISSIONS ${file_permissions} DIRECTORY_PERMISSIONS ${program_permissions}
    FILES_MATCHING PATTERN "*.json" PATTERN "*.dcf")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/checkup/rules/"
    DESTINATION lib/draxel/rules
    FILE_PERMISSIONS ${file_permissions} DIRECTORY_PERMISSIONS ${program_permissions}
    FILES_MATCHING PATTERN "*.json")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/src/live/health/rules/"
    DESTINATION lib/draxel/rules/health
    FILE_PERMISSIONS ${file_permissions} DIRECTORY_PERMISSIONS ${program_permissions}
    FILES_MATCHING PATTERN "*.json")

foreach(program IN ITEMS draxel draxelctl)
    file(MAKE_DIRECTORY "${made_dir}/bin")
    file(CREATE_LINK "../lib/draxel/${program}" "${made_dir}/bin/${program}" SYMBOLIC)
    install(FILES "${made_dir}/bin/${program}" DESTINATION bin)
endforeach()

# --- Completion in bash, zsh and fish: they ask a script beside the programs, so that what they offer is what the
# programs' own help shows. bash and fish look for a file named like the command; zsh looks into one of two folders,
# depending on the prefix.

set(completion_dir "${packaging_dir}/completion")
configure_file("${completion_dir}/complete" "${OVERVIEW_BIN_DIR}/complete" COPYONLY)
install(FILES "${completion_dir}/complete"
    DESTINATION lib/draxel PERMISSIONS ${program_permissions})
install(FILES "${completion_dir}/draxelctl.bash"
    DESTINATION share/bash-completion/completions PERMISSIONS ${file_permissions} RENAME draxelctl)
install(FILES "${completion_dir}/draxelctl.fish"
    DESTINATION share/fish/vendor_completions.d PERMISSIONS ${file_permissions})
install(FILES "${completion_dir}/_draxelctl"
    DESTINATION share/zsh/site-functions PERMISSIONS ${file_permissions})
# overview_install_link(<target> <folder> <name>)
function(overview_install_link target folder name)
    file(MAKE_DIRECTORY "${made_dir}/links/${folder}")
    file(CREATE_LINK "${target}" "${made_dir}/links/${folder}/${name}" SYMBOLIC)
    install(FILES "${made_dir}/links/${folder}/${name}" DESTINATION "${folder}")
endfunction()
overview_install_link(draxelctl share/bash-completion/completions draxel)
overview_install_link(draxelctl.fish share/fish/vendor_completions.d draxel.fish)
overview_install_link(../site-functions/_draxelctl share/zsh/vendor-completions _draxelctl)

# --- Desktop: menu entry, icons, description for software centres, type of the exchange file

set(application_id org.draxel.draxel)
install(FILES "${packaging_dir}/desktop/${application_id}.desktop"
    DESTINATION share/applications PERMISSIONS ${file_permissions})
install(FILES "${packaging_dir}/desktop/${application_id}.metainfo.xml"
    DESTINATION share/metainfo PERMISSIONS ${file_permissions})
install(FILES "${packaging_dir}/desktop/${application_id}.mime.xml"
    DESTINATION share/mime/packages PERMISSIONS ${file_permissions} RENAME ${application_id}.xml)
foreach(size IN ITEMS 16 32 48 64 128)
    install(FILES "${PROJECT_SOURCE_DIR}/src/resources/img/app/draxel-${size}.png"
        DESTINATION share/icons/hicolor/${size}x${size}/apps PERMISSIONS ${file_permissions}
        RENAME ${application_id}.png)
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/src/resources/svg/draxel-icon.svg"
    DESTINATION share/icons/hicolor/scalable/apps PERMISSIONS ${file_permissions}
    RENAME ${application_id}.svg)

# --- Documents: man pages and changelog are compressed, as Debian has them

find_program(OVERVIEW_GZIP gzip)
if(NOT OVERVIEW_GZIP)
    message(FATAL_ERROR "gzip is needed to compress the man pages")
endif()

set(compressed_documents)
# overview_compress(<source> <result>): <result> below the folder of made files, without name and time in its header,
# so that it depends on its content only.
function(overview_compress source result)
    set(output "${made_dir}/${result}")
    get_filename_component(folder "${output}" DIRECTORY)
    file(MAKE_DIRECTORY "${folder}")
    add_custom_command(OUTPUT "${output}"
        COMMAND "${OVERVIEW_GZIP}" -9nc "${source}" > "${output}"
        DEPENDS "${source}"
        COMMENT "Compressing ${result}"
        VERBATIM)
    set(compressed_documents ${compressed_documents} "${output}" PARENT_SCOPE)
endfunction()

foreach(program IN ITEMS draxel draxelctl)
    configure_file("${packaging_dir}/man/${program}.1.in" "${made_dir}/${program}.1" @ONLY)
    overview_compress("${made_dir}/${program}.1" man/${program}.1.gz)
    install(FILES "${made_dir}/man/${program}.1.gz"
        DESTINATION share/man/man1 PERMISSIONS ${file_permissions})
endforeach()
overview_compress("${packaging_dir}/debian/changelog" doc/changelog.gz)
install(FILES "${made_dir}/doc/changelog.gz" "${packaging_dir}/debian/copyright"
    DESTINATION share/doc/draxel PERMISSIONS ${file_permissions})
add_custom_target(installed_documents ALL DEPENDS ${compressed_documents})

include(OverviewPackage)
