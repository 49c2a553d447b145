# SPDX-License-Identifier: MIT
# Run by "cmake --install": makes the folders that are missing, readable for everybody whatever the umask of the one
# who installs. Folders that were there keep their permissions.
foreach(folder IN ITEMS
        bin lib/draxel/canbus lib/draxel/languages lib/draxel/plugins lib/draxel/vehicles
        share/applications share/bash-completion/completions share/doc/draxel share/fish/vendor_completions.d
        share/zsh/site-functions share/zsh/vendor-completions share/man/man1 share/metainfo share/mime/packages
        share/icons/hicolor/16x16/apps share/icons/hicolor/32x32/apps share/icons/hicolor/48x48/apps
        share/icons/hicolor/64x64/apps share/icons/hicolor/128x128/apps share/icons/hicolor/scalable/apps)
    set(path "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${folder}")
    set(missing)
    while(NOT EXISTS "${path}")
        list(APPEND missing "${path}")
        get_filename_component(path "${path}" DIRECTORY)
    endwhile()
    if(missing)
        file(MAKE_DIRECTORY ${missing})
        execute_process(COMMAND chmod 755 ${missing})
    endif()
endforeach()
