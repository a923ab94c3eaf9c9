# The platform's widgets and DPI helpers, one executable per class.
keltab_add_test(tst_dpitool SOURCES tst_dpitool.cpp)
keltab_add_test(tst_idpiadapter SOURCES tst_idpiadapter.cpp)
