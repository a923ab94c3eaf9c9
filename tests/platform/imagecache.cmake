# The icon cache: local files, resources and downloads from a server the test
# runs itself on 127.0.0.1.
keltab_add_test(tst_vosimagecache
    SOURCES tst_vosimagecache.cpp
    LIBRARIES Qt5::Network
    TIMEOUT 120)
