# What a plant's IT installs: the program, its desktop entry and icon, as a Debian package
# built by scripts/package.sh (cpack -G DEB). Libraries the program links are found by
# dpkg-shlibdeps; what it loads at run time (Qt's platform plugins, its Italian words and
# the server store's libpq) is declared by hand.
include(GNUInstallDirs)
install(TARGETS velmora RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${CMAKE_CURRENT_LIST_DIR}/velmora.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/velmora.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_VENDOR Velmora)
set(CPACK_PACKAGE_CONTACT "Velmora <manutenzione@velmora.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Gestione della manutenzione del reparto manutenzione")
set(CPACK_PACKAGE_DESCRIPTION "Registro degli impianti, procedure, scadenziario delle manutenzioni preventive, \
fermi macchina, tabellone settimanale, magazzino ricambi, interventi, ordini, fornitori, operatori, note e stampe.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, qt6-translations-l10n, libpq5")
set(CPACK_STRIP_FILES ON)
include(CPack)
