# The icon cache: local files, resources and downloads from a server the test
# runs itself on 127.0.0.1.
keltab_add_test(tst_vosimagecache
    SOURCES tst_vosimagecache.cpp iconserver.h
    LIBRARIES Qt5::Network
    TIMEOUT 120)
# Its rules for untrusted icons and its budgets, against the same kind of server,
# also over TLS (openssl makes a certificate for the test) and as a proxy.
find_package(ZLIB REQUIRED)
keltab_add_test(tst_vosimagecacherules
    SOURCES tst_vosimagecacherules.cpp iconserver.h
    LIBRARIES Qt5::Network ZLIB::ZLIB
    TIMEOUT 180)
