# The Debian package of the program (script/package): both programs, the record-manager
# library, the shared data, the menu entry and the manual page, as the install rules place them
# under /usr. Its dependencies are the libraries the programs link (found by dpkg-shlibdeps)
# and the plug-ins Qt loads at run time: the SQLite driver of the local database, the SVG
# engine of the icons and the Italian translations of the standard buttons; the PostgreSQL
# driver is recommended for a database on a server.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME pagamenti)
set(CPACK_PACKAGE_VENDOR "Pagamenti")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "distinte di pagamento fornitori e file bonifici CBI")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Modulo dei pagamenti della suite contabile: l'operatore sceglie le scadenze aperte dei\n"
    "fornitori, le raccoglie in distinte, le salva, le stampa e scrive i file CBI per la\n"
    "banca (bonifici SEPA XML o a record fissi, ricevute bancarie). Contiene il programma da\n"
    "scrivania pagamenti, la riga di comando pagamenti-cli e la libreria del gestore archivi.\n"
    "Dopo l'installazione: pagamenti-cli installa CARTELLA_DI_ORVIDA.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Amministrazione Pagamenti <pagamenti@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION office)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The record-manager library is the package's own, loaded by its path.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/bin)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, libqt6svg6, qt6-translations-l10n")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libqt6sql6-psql")
include(CPack)
