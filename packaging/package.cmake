# What an installed Orvane consists of, and the Debian package of it (docs/packaging.md).

# A folder of its own, the same on every architecture: the companion lies beside the program, and
# the program finds it there by whatever link it was started.
set(program_dir lib/orvane)
set(pieces ${CMAKE_BINARY_DIR}/packaging)
file(MAKE_DIRECTORY ${pieces})

install(TARGETS orvane orvane-service exit.exe RUNTIME DESTINATION ${program_dir})
install(TARGETS orvane-ups-sim orvane-modem-sim RUNTIME DESTINATION bin)
file(CREATE_LINK ../${program_dir}/orvane ${pieces}/orvane SYMBOLIC)
install(FILES ${pieces}/orvane DESTINATION bin)
file(CREATE_LINK ../${program_dir}/orvane-service ${pieces}/orvane-service SYMBOLIC)
install(FILES ${pieces}/orvane-service DESTINATION sbin)

install(FILES packaging/orvane.desktop DESTINATION share/applications)
# What a user who has no settings yet begins with.
install(FILES packaging/Orvane.ini DESTINATION share/orvane)
install(FILES packaging/orvane.metainfo.xml DESTINATION share/metainfo)

# The icon, drawn once, in the sizes that desktops ask for.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
set(icon packaging/orvane.svg)
set(icons share/icons/hicolor)
install(FILES ${icon} DESTINATION ${icons}/scalable/apps)
foreach(size 16 22 24 32 48 64 128 256)
  set(png ${pieces}/${size}/orvane.png)
  file(MAKE_DIRECTORY ${pieces}/${size})
  add_custom_command(
    OUTPUT ${png}
    COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${png} ${CMAKE_SOURCE_DIR}/${icon}
    DEPENDS ${icon} VERBATIM)
  list(APPEND made ${png})
  install(FILES ${png} DESTINATION ${icons}/${size}x${size}/apps)
endforeach()

# Without name and time inside, the same text always gives the same file.
function(install_compressed text name destination)
  set(packed ${pieces}/${destination}/${name}.gz)
  cmake_path(GET packed PARENT_PATH folder)
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(
    OUTPUT ${packed}
    COMMAND gzip -9nc ${CMAKE_SOURCE_DIR}/${text} > ${packed}
    DEPENDS ${text} VERBATIM)
  install(FILES ${packed} DESTINATION ${destination})
  set(made ${made} ${packed} PARENT_SCOPE)
endfunction()

foreach(page orvane orvane-ups-sim orvane-modem-sim)
  install_compressed(packaging/man/${page}.1 ${page}.1 share/man/man1)
  install_compressed(packaging/man/zh_CN/${page}.1 ${page}.1 share/man/zh_CN/man1)
endforeach()
foreach(language "" zh_CN/)
  install_compressed(packaging/man/${language}orvane-service.8 orvane-service.8
                     share/man/${language}man8)
endforeach()
install_compressed(packaging/changelog changelog share/doc/orvane)
add_custom_target(orvane_pieces ALL DEPENDS ${made})

install(FILES packaging/copyright README.md README.zh.md DESTINATION share/doc/orvane)
install(DIRECTORY docs DESTINATION share/doc/orvane
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg")
install(FILES packaging/60-orvane-ups.rules DESTINATION lib/udev/rules.d)

# The service, which nothing here enables: its unit, its user, who may see and steer it, what its
# group may do to the computer, and its interface.
install(FILES packaging/orvane.service DESTINATION lib/systemd/system)
install(FILES packaging/orvane.sysusers DESTINATION lib/sysusers.d RENAME orvane.conf)
install(FILES packaging/org.orvane.Orvane1.conf DESTINATION share/dbus-1/system.d)
install(FILES packaging/org.orvane.Orvane1.xml DESTINATION share/dbus-1/interfaces)
install(FILES packaging/50-orvane.rules DESTINATION share/polkit-1/rules.d)
install(DIRECTORY packaging/upsd DESTINATION share/doc/orvane/examples)

install(FILES packaging/lintian-overrides DESTINATION share/lintian/overrides RENAME orvane)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvane)
set(CPACK_PACKAGE_CONTACT "Orvane maintainers <maintainers@orvane.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "watches a UPS on a serial or USB port and protects the computer")
set(CPACK_PACKAGE_DESCRIPTION
"Orvane watches an uninterruptible power supply on a serial or USB port, in one
small window, in English and Chinese. It shows mains, battery, load,
temperature and link, and keeps a log and a history. When the mains fails it
counts down, warns, tells the UPS to switch off, lets a companion program save
and close the applications, and takes the computer down. Schedules switch
computer and UPS off and on by the week or by date, and a modem can call a
telephone when a fault lasts.
.
A simulated UPS and a simulated modem are included, for trying it out.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_SOURCE_DIR}/packaging/strip.cmake)
# Whatever the umask of whoever makes the package.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# The libraries; the plug-ins for X11 and for SVG come in the packages of Qt's own libraries.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-logind | logind, polkitd, fonts-wqy-microhei | fonts-noto-cjk")
# Which serves the UPS to other computers.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "nut-server")
set(CPACK_DEBIAN_PACKAGE_DEPENDS "systemd | systemd-standalone-sysusers | systemd-sysusers")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
    "${CMAKE_SOURCE_DIR}/packaging/deb/postinst;${CMAKE_SOURCE_DIR}/packaging/deb/prerm;${CMAKE_SOURCE_DIR}/packaging/deb/postrm")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
