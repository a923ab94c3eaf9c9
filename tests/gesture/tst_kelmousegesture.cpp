// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "gesturemapbytes.h"
#include "gesturetestsupport.h"
#include "singletontest.h"
#include "kelmousegesture.h"

#include <QDataStream>
#include <QPointer>
#include <QRandomGenerator>
#include <QTranslator>


using GestureMap = QMap<EMouseGestureDirection, EBrowserAction>;
using namespace GestureTest;

namespace {

const QString kEnableKey = QStringLiteral("SYS_SETTING_ENABLE_GESTURE");
const QString kTipKey = QStringLiteral("SYS_SETTING_GESTURE_TIP");
const QString kMapKey = QStringLiteral("SYS_SETTING_GESTURE_MAP");

GestureMap FactoryMap()
{
    GestureMap map;
    for (int shape = 1; shape <= 11; ++shape)
        map.insert(EMouseGestureDirection(shape), EBrowserAction(shape + 1));
    return map;
}

QByteArray StoredImage()
{
    return QByteArray::fromBase64(StoredValue(kMapKey).toLatin1());
}

// An independent reading of the image, byte by byte, to check the library against.
// @return false when the image ends before its count of entries does.
bool ReferenceDecode(const QByteArray &image, QList<QPair<qint32, qint32>> *pairs)
{
    auto be32 = [&image](int at) {
        return quint32(quint8(image[at])) << 24 | quint32(quint8(image[at + 1])) << 16
            | quint32(quint8(image[at + 2])) << 8 | quint32(quint8(image[at + 3]));
    };
    if (image.size() < 4)
        return false;
    const quint32 count = be32(0);
    if ((image.size() - 4) / 8 < qint64(count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        const int at = 4 + int(i) * 8;
        pairs->append(qMakePair(qint32(be32(at)), qint32(be32(at + 4))));
    }
    return true;
}

// Turns every source text into a recognisable translation.
class MarkingTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        if (qstrcmp(context, "KelMouseGesture") != 0)
            return QString();
        return QStringLiteral("[") + QString::fromUtf8(sourceText) + QStringLiteral("]");
    }
};

} // namespace

class TstKelMouseGesture : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;

private Q_SLOTS:
    void init() { m_sandbox.reset(new Sandbox); }
    void cleanup() { m_sandbox.reset(); }

    void emptyStoreGivesSwitchesOnAndFactoryMap()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        QVERIFY(gesture->GetEnableGesture());
        QVERIFY(gesture->GetEnableGestureTip());
        QCOMPARE(gesture->GetGestureMap(), gesture->GetDefaultGestureMap());
        QCOMPARE(gesture->GetDefaultGestureMap(), FactoryMap());
        // Reading stores nothing.
        QCOMPARE(StoredValue(kMapKey), QString());
        QCOMPARE(StoredValue(kEnableKey), QString());
    }

    void factoryBindingIsOneValueHigher()
    {
        const GestureMap map = KelMouseGesture::Instance()->GetDefaultGestureMap();
        QCOMPARE(map.size(), 11);
        QCOMPARE(map.value(MouseGestureLeft), BrowserActionBack);
        QCOMPARE(map.value(MouseGestureRight), BrowserActionForward);
        QCOMPARE(map.value(MouseGestureUp), BrowserActionPageUp);
        QCOMPARE(map.value(MouseGestureDown), BrowserActionPageDown);
        QCOMPARE(map.value(MouseGestureDownRight), BrowserActionCloseTab);
        QCOMPARE(map.value(MouseGestureRightUp), BrowserActionNewTab);
        QCOMPARE(map.value(MouseGestureRightDown), BrowserActionReload);
        QCOMPARE(map.value(MouseGestureLeftUp), BrowserActionCloseAll);
        QCOMPARE(map.value(MouseGestureUpLeft), BrowserActionPreviousTab);
        QCOMPARE(map.value(MouseGestureUpRight), BrowserActionNextTab);
        QCOMPARE(map.value(MouseGestureRightLeft), BrowserActionRecoverClosedTab);
    }

    void switchText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("on");
        QTest::newRow("0") << QStringLiteral("0") << false;
        QTest::newRow("1") << QStringLiteral("1") << true;
        QTest::newRow("empty") << QString() << true;
        QTest::newRow("yes") << QStringLiteral("yes") << false;
        QTest::newRow("true") << QStringLiteral("true") << false;
        QTest::newRow("blank before 1") << QStringLiteral(" 1") << false;
        QTest::newRow("1 and a blank") << QStringLiteral("1 ") << false;
        QTest::newRow("11") << QStringLiteral("11") << false;
    }

    void switchText()
    {
        QFETCH(QString, text);
        QFETCH(bool, on);

        // Read at construction...
        StoreValue(kEnableKey, text);
        StoreValue(kTipKey, text);
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        QCOMPARE(gesture->GetEnableGesture(), on);
        QCOMPARE(gesture->GetEnableGestureTip(), on);

        // ... and again on request, each switch on its own.
        StoreValue(kEnableKey, on ? QStringLiteral("0") : QStringLiteral("1"));
        StoreValue(kTipKey, on ? QStringLiteral("0") : QStringLiteral("1"));
        QCOMPARE(gesture->GetEnableGesture(), on);
        gesture->ReadEnableGesture();
        QCOMPARE(gesture->GetEnableGesture(), !on);
        QCOMPARE(gesture->GetEnableGestureTip(), on);
        gesture->ReadEnableGestureTip();
        QCOMPARE(gesture->GetEnableGestureTip(), !on);

        StoreValue(kEnableKey, text);
        StoreValue(kTipKey, text);
        gesture->ReadEnableGesture();
        gesture->ReadEnableGestureTip();
        QCOMPARE(gesture->GetEnableGesture(), on);
        QCOMPARE(gesture->GetEnableGestureTip(), on);
    }

    void settingSwitchesWritesTextAtOnce()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        gesture->SetEnableGesture(false);
        QVERIFY(!gesture->GetEnableGesture());
        QCOMPARE(StoredValue(kEnableKey), QStringLiteral("0"));
        gesture->SetEnableGestureTip(false);
        QVERIFY(!gesture->GetEnableGestureTip());
        QCOMPARE(StoredValue(kTipKey), QStringLiteral("0"));
        gesture->SetEnableGesture(true);
        QCOMPARE(StoredValue(kEnableKey), QStringLiteral("1"));
        gesture->SetEnableGestureTip(true);
        QCOMPARE(StoredValue(kTipKey), QStringLiteral("1"));
    }

    void switchesHeldInMemoryOnly()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        StoreValue(kEnableKey, QStringLiteral("0"));
        StoreValue(kTipKey, QStringLiteral("0"));
        // The getters do not look at the store.
        QVERIFY(gesture->GetEnableGesture());
        QVERIFY(gesture->GetEnableGestureTip());
    }

    void oneEntryMapStoresTwelveBytes()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        gesture->SetGestureMap(GestureMap{{MouseGestureLeft, BrowserActionNewTab}});
        QCOMPARE(StoredImage(), QByteArray::fromHex("00000001" "00000001" "00000007"));
        QCOMPARE(StoredValue(kMapKey), QStringLiteral("AAAAAQAAAAEAAAAH"));

        GestureMap expected = FactoryMap();
        expected[MouseGestureLeft] = BrowserActionNewTab;
        QCOMPARE(gesture->GetGestureMap(), expected);
    }

    void setGestureMapIsSeenAtOnceWithoutSignal()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        QSignalSpy spy(gesture, &KelMouseGesture::SigMouseGestureUpdate);
        GestureMap map = FactoryMap();
        map[MouseGestureUp] = BrowserActionInvalid;
        gesture->SetGestureMap(map);
        QCOMPARE(gesture->GetGestureMap(), map);
        map[MouseGestureUp] = BrowserActionReload;
        gesture->SetGestureMap(map);
        QCOMPARE(gesture->GetGestureMap().value(MouseGestureUp), BrowserActionReload);
        gesture->SetEnableGesture(false);
        gesture->SetEnableGestureTip(false);
        gesture->ReadEnableGesture();
        QCOMPARE(spy.count(), 0);
    }

    void countThreeWithOnePairReadsAsEmpty()
    {
        StoreValue(kMapKey, QString::fromLatin1(QByteArray(Be32(3) + Pair(MouseGestureLeft, BrowserActionNewTab)).toBase64()));
        QCOMPARE(KelMouseGesture::Instance()->GetGestureMap(), FactoryMap());
    }

    void factoryMapImageByteForByte()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        gesture->SetGestureMap(gesture->GetDefaultGestureMap());
        const QByteArray image = StoredImage();

        QCOMPARE(image.size(), 92);
        QByteArray expected = Be32(11);
        for (int shape = 11; shape >= 1; --shape)
            expected += Pair(shape, shape + 1);
        QCOMPARE(image, expected);
        QCOMPARE(image.left(4), QByteArray::fromHex("0000000b"));
        QCOMPARE(image.mid(4, 8), QByteArray::fromHex("0000000b" "0000000c"));
        QCOMPARE(image.right(8), QByteArray::fromHex("00000001" "00000002"));

        QMap<int, int> intMap;
        for (int shape = 1; shape <= 11; ++shape)
            intMap.insert(shape, shape + 1);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        // What Qt 5's QDataStream writes for the same QMap<int, int>, and for the enum
        // map. Qt 6's writes the pairs from the lowest key up; the stored image keeps
        // Qt 5's order on both.
        QByteArray qtIntImage;
        {
            QDataStream stream(&qtIntImage, QIODevice::WriteOnly);
            stream << intMap;
        }
        QCOMPARE(image, qtIntImage);
        QByteArray qtEnumImage;
        {
            QDataStream stream(&qtEnumImage, QIODevice::WriteOnly);
            stream << FactoryMap();
        }
        QCOMPARE(image, qtEnumImage);
#endif

        // And Qt's own streaming reads it back into the same eleven pairs.
        QMap<int, int> readBack;
        QDataStream in(image);
        in >> readBack;
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(readBack, intMap);
        QCOMPARE(gesture->GetGestureMap(), FactoryMap());
    }

    void storedMapGainsNewShapesWithDefaults()
    {
        // As an older build with fewer shapes would have saved it.
        StoreValue(kMapKey, QString::fromLatin1(QByteArray(Be32(2) + Pair(2, 9) + Pair(1, 3)).toBase64()));
        GestureMap expected = FactoryMap();
        expected[MouseGestureLeft] = BrowserActionForward;
        expected[MouseGestureRight] = BrowserActionCloseAll;
        QCOMPARE(KelMouseGesture::Instance()->GetGestureMap(), expected);
    }

    void malformedStoredMaps_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("factoryExpected");

        QRandomGenerator generator(4242);
        for (int i = 0; i < 12; ++i) {
            QByteArray bytes(int(generator.bounded(1, 200)), '\0');
            for (char &c : bytes)
                c = char(generator.bounded(256));
            QTest::addRow("random bytes %d", i) << QString::fromLatin1(bytes.toBase64()) << false;
        }
        QByteArray factory = Be32(11);
        for (int shape = 11; shape >= 1; --shape)
            factory += Pair(shape, shape + 1);
        QTest::newRow("truncated by one byte") << QString::fromLatin1(factory.left(91).toBase64()) << true;
        QTest::newRow("truncated inside the count") << QString::fromLatin1(factory.left(3).toBase64()) << true;
        QTest::newRow("huge count") << QString::fromLatin1(QByteArray(Be32(0xFFFFFFFFu) + Pair(1, 7)).toBase64()) << true;
        QTest::newRow("count 0") << QString::fromLatin1(Be32(0).toBase64()) << true;
        QTest::newRow("negative values")
            << QString::fromLatin1(QByteArray(Be32(2) + Pair(-3, -9) + Pair(4, -1)).toBase64()) << false;
        QTest::newRow("unknown shape and action")
            << QString::fromLatin1(QByteArray(Be32(1) + Pair(42, 99)).toBase64()) << false;
        QTest::newRow("non-Base64 text") << QStringLiteral("%%%% not base64 ####") << false;
        QTest::newRow("only characters outside the alphabet") << QStringLiteral("!@#$%^&*()") << true;
        QTest::newRow("Unicode") << QStringLiteral("\u624b\u52bf\U0001F600") << true;
    }

    void malformedStoredMaps()
    {
        QFETCH(QString, text);
        QFETCH(bool, factoryExpected);

        StoreValue(kMapKey, text);
        const GestureMap actual = KelMouseGesture::Instance()->GetGestureMap();

        // Work out, independently, what the stored text says.
        GestureMap expected = FactoryMap();
        QList<QPair<qint32, qint32>> pairs;
        if (ReferenceDecode(QByteArray::fromBase64(text.toUtf8()), &pairs)) {
            for (const auto &pair : qAsConst(pairs))
                expected[EMouseGestureDirection(pair.first)] = EBrowserAction(pair.second);
        }
        QCOMPARE(actual, expected);
        if (factoryExpected)
            QCOMPARE(actual, FactoryMap());
    }

    void negativeAndUnknownValuesAreKept()
    {
        StoreValue(kMapKey, QString::fromLatin1(QByteArray(Be32(2) + Pair(-3, -9) + Pair(4, 99)).toBase64()));
        const GestureMap map = KelMouseGesture::Instance()->GetGestureMap();
        QCOMPARE(map.size(), 12);
        QCOMPARE(int(map.value(EMouseGestureDirection(-3))), -9);
        QCOMPARE(int(map.value(MouseGestureDown)), 99);
        QCOMPARE(map.value(MouseGestureLeft), BrowserActionBack);
    }

    void actionTexts_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << QStringLiteral("Invalid action");
        QTest::newRow("1") << 1 << QStringLiteral("Invalid action");
        QTest::newRow("2") << 2 << QStringLiteral("Back");
        QTest::newRow("3") << 3 << QStringLiteral("Forward");
        QTest::newRow("4") << 4 << QStringLiteral("PageUp");
        QTest::newRow("5") << 5 << QStringLiteral("PageDown");
        QTest::newRow("6") << 6 << QStringLiteral("Close tab");
        QTest::newRow("7") << 7 << QStringLiteral("New tab");
        QTest::newRow("8") << 8 << QStringLiteral("Reload");
        QTest::newRow("9") << 9 << QStringLiteral("Close all");
        QTest::newRow("10") << 10 << QStringLiteral("Previous tab");
        QTest::newRow("11") << 11 << QStringLiteral("Next tab");
        QTest::newRow("12") << 12 << QStringLiteral("Recover recently closed tab");
        QTest::newRow("13") << 13 << QStringLiteral("Invalid action");
        QTest::newRow("-1") << -1 << QStringLiteral("Invalid action");
    }

    void actionTexts()
    {
        QFETCH(int, action);
        QFETCH(QString, text);
        QCOMPARE(KelMouseGesture::Instance()->GetBrowserActionText(EBrowserAction(action)), text);
    }

    void actionTextsAreTranslated()
    {
        MarkingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        const QString newTab = gesture->GetBrowserActionText(BrowserActionNewTab);
        const QString unknown = gesture->GetBrowserActionText(EBrowserAction(13));
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(newTab, QStringLiteral("[New tab]"));
        QCOMPARE(unknown, QStringLiteral("[Invalid action]"));
        // Translated once, at construction.
        QCOMPARE(gesture->GetBrowserActionText(BrowserActionNewTab), QStringLiteral("[New tab]"));
    }

    void shapeImages_data()
    {
        QTest::addColumn<int>("direction");
        QTest::addColumn<QString>("path");
        const char *names[] = {"left", "right", "up", "down", "downright", "rightup",
                               "rightdown", "leftup", "upleft", "upright", "rightleft"};
        for (int i = 0; i < 11; ++i)
            QTest::newRow(names[i]) << i + 1
                                    << QStringLiteral(":/images/mousegesture/%1.png").arg(QLatin1String(names[i]));
    }

    void shapeImages()
    {
        QFETCH(int, direction);
        QFETCH(QString, path);
        const QPixmap pixmap = KelMouseGesture::Instance()->GetGestureDirectionPixmap(EMouseGestureDirection(direction));
        QVERIFY(!pixmap.isNull());
        QCOMPARE(pixmap.toImage(), QImage(path).convertToFormat(pixmap.toImage().format()));
        // Drawn at twice the 32-pixel design size.
        QCOMPARE(pixmap.size(), QSize(64, 64));
    }

    void unknownShapeHasNoImage()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        QVERIFY(gesture->GetGestureDirectionPixmap(EMouseGestureDirection(0)).isNull());
        QVERIFY(gesture->GetGestureDirectionPixmap(EMouseGestureDirection(12)).isNull());
    }

    void allActionsAndShapes()
    {
        KelMouseGesture *gesture = KelMouseGesture::Instance();
        const QList<EBrowserAction> actions = gesture->GetAllBrowserAction();
        QCOMPARE(actions.size(), 12);
        QCOMPARE(actions.first(), BrowserActionInvalid);
        QCOMPARE(actions.last(), BrowserActionRecoverClosedTab);
        for (int i = 0; i < actions.size(); ++i)
            QCOMPARE(int(actions.at(i)), i + 1);
        const QList<EMouseGestureDirection> shapes = gesture->GetAllGestureDirection();
        QCOMPARE(shapes.size(), 11);
        for (int i = 0; i < shapes.size(); ++i)
            QCOMPARE(int(shapes.at(i)), i + 1);
    }

    void releaseThenInstanceReadsSwitchesAgain()
    {
        QPointer<KelMouseGesture> first = KelMouseGesture::Instance();
        QVERIFY(first->GetEnableGesture());
        QVERIFY(first->GetEnableGestureTip());
        StoreValue(kEnableKey, QStringLiteral("0"));
        StoreValue(kTipKey, QStringLiteral("0"));

        KelMouseGesture::ReleaseInstance();
        QVERIFY(!first);
        KelMouseGesture *second = KelMouseGesture::Instance();
        QVERIFY(second);
        QVERIFY(!second->GetEnableGesture());
        QVERIFY(!second->GetEnableGestureTip());
        KelMouseGesture::ReleaseInstance();
        KelMouseGesture::ReleaseInstance();
    }

    void releaseDropsConnections()
    {
        QObject listener;
        int calls = 0;
        connect(KelMouseGesture::Instance(), &KelMouseGesture::SigMouseGestureUpdate, &listener, [&calls] { ++calls; });
        emit KelMouseGesture::Instance()->SigMouseGestureUpdate();
        QCOMPARE(calls, 1);
        KelMouseGesture::ReleaseInstance();
        emit KelMouseGesture::Instance()->SigMouseGestureUpdate();
        QCOMPARE(calls, 1);
    }

    void offTheGuiThreadIsRefused()
    {
        SingletonTest::CheckRefusedOffTheGuiThread<KelMouseGesture>("KelMouseGesture");
    }

    void releaseFromItsOwnDestruction()
    {
        SingletonTest::CheckQObjectReleaseFromItsOwnDestruction<KelMouseGesture>();
    }
};

KELTAB_TEST_MAIN(TstKelMouseGesture)
#include "tst_kelmousegesture.moc"
