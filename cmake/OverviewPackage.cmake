# SPDX-License-Identifier: MIT
# "cpack -G DEB" in the build folder makes a Debian package of what OverviewInstall.cmake installs.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME draxel)
set(CPACK_PACKAGE_VENDOR "Draxel Project")
set(CPACK_PACKAGE_CONTACT "Draxel Project <maintainers@draxel.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "look into the CANopen bus of light electric vehicles")
set(CPACK_PACKAGE_DESCRIPTION "\
Draxel shows every device on the CANopen bus of a pedelec or another light
electric vehicle: bus controller, batteries, chargers, motors, displays,
locks and more, as the application profile CiA 454 describes them. It reads
their object dictionaries over SDO and puts the raw values into words.
.
What was read can be saved, opened again and printed as a report. The
simulated vehicles that come with it need neither a vehicle nor CAN hardware.
.
The package holds the window, draxel, and a command line, draxelctl.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/OverviewPackageFolder.cmake")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT) # name_version_architecture.deb
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "${CPACK_PACKAGE_DESCRIPTION}")
# The libraries' packages are found from the binaries; the back ends for CAN hardware and the
# drivers of the archive's databases are loaded at run time.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5serialbus5-plugins, libqt5sql5-sqlite, libqt5sql5-psql")
# The second one: Chinese is a row of boxes without a font for it.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qttranslations5-l10n, fonts-noto-cjk | fonts-wqy-zenhei | fonts-arphic-uming")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

include(CPack)
