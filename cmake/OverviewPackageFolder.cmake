# SPDX-License-Identifier: MIT
# Run by cpack before the installation into its own folder: cpack would make the prefix (/usr in the package) with the
# permissions that the umask leaves.
set(prefix "${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX}")
file(MAKE_DIRECTORY "${prefix}")
execute_process(COMMAND chmod 755 "${prefix}")
