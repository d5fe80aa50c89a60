# What `cmake --install BUILD --prefix DIR` installs, in two components: `program` (the program, the libraries that it loads, the
# page) and `development` (headers, the functions of the platform, what find_package and pkg-config read, examples).

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(JOURNAL_INSTALL_HEADERS "${CMAKE_INSTALL_INCLUDEDIR}/journalservice-0")
set(JOURNAL_INSTALL_FULL_HEADERS "${CMAKE_INSTALL_FULL_INCLUDEDIR}/journalservice-0")
set(journal_package_directory "${CMAKE_INSTALL_LIBDIR}/cmake/journalservice")

install(TARGETS calljournal RUNTIME COMPONENT program)
install(TARGETS journalservice LIBRARY COMPONENT program NAMELINK_COMPONENT program)
# Only the program loads it.
install(TARGETS calljournalplaces LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/calljournal" COMPONENT program)
# The folder of the page exists only if it could be built.
install(DIRECTORY "${PROJECT_BINARY_DIR}/share/calljournal/web" DESTINATION "${CMAKE_INSTALL_DATADIR}/calljournal"
    COMPONENT program OPTIONAL)
set(journal_reference "${PROJECT_BINARY_DIR}/share/calljournal-reference")
install(DIRECTORY "${journal_reference}/man/" DESTINATION "${CMAKE_INSTALL_MANDIR}" COMPONENT program)
foreach(shell IN ITEMS bash-completion zsh fish)
    install(DIRECTORY "${journal_reference}/${shell}" DESTINATION "${CMAKE_INSTALL_DATADIR}" COMPONENT program)
endforeach()

# One archive of the platform's functions; the headers are those of the interfaces and of the values in them.
add_library(journalplatform STATIC $<TARGET_OBJECTS:platform> $<TARGET_OBJECTS:platform_client_utils> $<TARGET_OBJECTS:journal_xml>)
set_target_properties(journalplatform PROPERTIES LINKER_LANGUAGE CXX)
install(TARGETS journalplatform ARCHIVE COMPONENT development)
foreach(folder IN ITEMS platform journal-items)
    install(DIRECTORY "${folder}" DESTINATION "${JOURNAL_INSTALL_HEADERS}" COMPONENT development
        FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES
        include/journalservice/ContactGetterIfc.h
        include/journalservice/JournalListMemoryIfc.h
        include/journalservice/JournalServiceIfc.h
        include/journalservice/JournalServiceObserverIfc.h
        include/journalservice/JournalServiceObserverSubscriptionIfc.h
    DESTINATION "${JOURNAL_INSTALL_HEADERS}/journalservice" COMPONENT development)
install(DIRECTORY examples DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT development)

configure_package_config_file(packaging/cmake/journalserviceConfig.cmake.in "${PROJECT_BINARY_DIR}/journalserviceConfig.cmake"
    INSTALL_DESTINATION "${journal_package_directory}" PATH_VARS CMAKE_INSTALL_LIBDIR JOURNAL_INSTALL_HEADERS)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/journalserviceConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
configure_file(packaging/cmake/journalservice.pc.in "${PROJECT_BINARY_DIR}/journalservice.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/journalserviceConfig.cmake" "${PROJECT_BINARY_DIR}/journalserviceConfigVersion.cmake"
    DESTINATION "${journal_package_directory}" COMPONENT development)
install(FILES "${PROJECT_BINARY_DIR}/journalservice.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

# What runs the program as a service of the system.
foreach(unit IN ITEMS calljournal.service calljournal-backup.service)
    configure_file("packaging/systemd/${unit}.in" "${PROJECT_BINARY_DIR}/systemd/${unit}" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/systemd/${unit}" DESTINATION lib/systemd/system COMPONENT service)
endforeach()
install(FILES packaging/systemd/calljournal-backup.timer DESTINATION lib/systemd/system COMPONENT service)
install(FILES packaging/systemd/calljournal.sysusers DESTINATION lib/sysusers.d RENAME calljournal.conf COMPONENT service)
install(FILES packaging/calljournal.toml DESTINATION "${CMAKE_INSTALL_SYSCONFDIR}/calljournal" COMPONENT service)
install(DIRECTORY packaging/monitoring DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT service)
install(FILES packaging/logrotate/calljournal DESTINATION "${CMAKE_INSTALL_SYSCONFDIR}/logrotate.d" COMPONENT service)
