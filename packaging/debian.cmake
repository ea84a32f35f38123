# The Debian packages, made by CPack of the components.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavrocli)
set(CPACK_PACKAGE_VENDOR Tavro)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_COMPONENTS_ALL tavrocli simulator linux fleet)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Tavro <tavrocli@tavro.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_TAVROCLI_PACKAGE_NAME tavrocli)
set(CPACK_DEBIAN_TAVROCLI_PACKAGE_SUGGESTS "tavrocli-linux, tavrocli-simulator, bash-completion")
set(CPACK_COMPONENT_TAVROCLI_DESCRIPTION "command-line management of converged network adapters
tavrocli shows and changes the Ethernet, iSCSI and FCoE functions of converged
network adapters, one command a run. tavrohost copies a host's adapters into a
file and rehearses commands on the copy before they are given to the host.

The programs need the adapters' management library, tavro.dll, which is not
part of this package: it belongs into /usr/lib/tavrocli.")

set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME tavrocli-simulator)
set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SUGGESTS "tavrocli, bash-completion")
set(CPACK_COMPONENT_SIMULATOR_DESCRIPTION "pretend host on which tavrocli commands can be tried
The simulator stands in for the management library of converged network
adapters: a whole host that behaves, kept in a file of the user's own. The
command tavrocli-rehearse is tavrocli on this host; no adapter is ever touched.

The simulator lies in a folder of its own, where tavrocli does not look.")

# The library makes its folder below /var/lib when it first has something to keep; purging the package removes it.
set(CPACK_DEBIAN_LINUX_PACKAGE_NAME tavrocli-linux)
set(CPACK_DEBIAN_LINUX_PACKAGE_SUGGESTS "tavrocli, tavrocli-simulator, bash-completion")
set(CPACK_DEBIAN_LINUX_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/linux/postrm)
set(CPACK_COMPONENT_LINUX_DESCRIPTION "tavrocli commands for this machine's own network adapters
A management library for Linux hosts, with the programs on it: tavrocli-linux
shows and changes the network interfaces of this machine, asks iSCSI targets
for their logical units, and tells of FCoE ports; tavrohost-linux copies the
host into a file and rehearses commands on the copy. They talk to the kernel,
and need no library of an adapter's maker.

The library lies in a folder of its own, where tavrocli does not look.")

set(CPACK_DEBIAN_FLEET_PACKAGE_NAME ansible-collection-tavro)
set(CPACK_DEBIAN_FLEET_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_FLEET_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_FLEET_PACKAGE_DEPENDS "ansible-core (>= 2.14)")
set(CPACK_DEBIAN_FLEET_PACKAGE_SUGGESTS tavrocli)
set(CPACK_DEBIAN_FLEET_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/fleet/prerm)
set(CPACK_COMPONENT_FLEET_DESCRIPTION "converged network adapters of many hosts, through Ansible
The collection tavro.fleet: modules that bring the converged network adapters
of hosts into a wanted state, or tell beforehand what would change where.

It belongs on the machine that runs Ansible. The managed hosts need tavrohost,
which the package tavrocli has, and nothing of this package.")

# What every Debian package has, but no other installation.
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/finish.cmake)
set(CPACK_TAVRO_DEBIAN_FOLDER ${CMAKE_CURRENT_SOURCE_DIR}/debian)

include(CPack)
