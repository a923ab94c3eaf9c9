#include "keltabtest.h"
class Tst : public QObject { Q_OBJECT };
KELTAB_TEST_MAIN(Tst)
#include "tst_browsertabarrowproxyex.moc"
